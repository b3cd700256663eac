# What the scripts that look at movies share: an episode that moves and clicks, and `check_movie`,
# which asks other people's tools and the boxes themselves.

# Colours and alpha that change with place and time; a click in the very first sample.
clicking_episode() {
    cat <<'TEXT'
float4 shade(float2 uv, constant Uniforms& u, constant Params& p) {
    const float a = smoothstep(0.1, 0.5, uv.y + 0.1 * sin(9.0 * uv.x + 5.0 * u.time));
    return float4(uv.x, 0.5 + 0.5 * sin(20.0 * uv.y - 8.0 * u.time), 0.4, 1.0) * a;
}
float2 sound(float t, constant Params& p) { return float2(t < 1e-5 ? 0.9 : 0.0); }
TEXT
}

have_tools() {
    { "$TARNWICK" devices && command -v ffprobe && command -v ffmpeg && command -v mediainfo; } \
        >out 2>err
}

# have_line PATTERN FILE: FILE has a line that is PATTERN and nothing else.
have_line() {
    grep -q -x -e "$1" "$2" || {
        complain "no line: $1" "$movie"
        head -n 60 "$2"
    }
}

# check_movie FILE ID WIDTH HEIGHT FRAMES: FILE is a movie of preset ID with a click for a sound.
check_movie() {
    movie=$1 preset=$2 width=$3 height=$4 frames=$5
    fps=60
    case $preset in
    main4k | 5k) codec=hevc profile=Main pixels=yuv420p tag=hvc1 format=HEVC ;;
    uhd120) codec=hevc profile=Main pixels=yuv420p tag=hvc1 format=HEVC fps=120 ;;
    hevcalpha) codec=hevc profile=Main pixels=yuv420p tag=hvc1 format=HEVC ;;
    prores422) codec=prores profile=HQ pixels=yuv422p10le tag=apch format=ProRes ;;
    prores4444) codec=prores profile=4444 pixels=yuva444p12le tag=ap4h format=ProRes ;;
    web | preview) codec=h264 profile=High pixels=yuv420p tag=avc1 format=AVC ;;
    *) codec=h264 profile=High pixels=yuv420p tag=avc1 format=AVC fps=30 ;;
    esac
    samples=$((frames * 48000 / fps))
    check_probe
    check_decoding
    check_mediainfo
    check_boxes
    check_click
}

check_probe() {
    ffprobe -v error -count_frames -select_streams v -show_entries \
        stream=codec_name,profile,codec_tag_string,width,height,pix_fmt,color_range,color_space,color_transfer,color_primaries,r_frame_rate,avg_frame_rate,nb_read_frames,start_time,duration:stream_disposition= \
        -of default=noprint_wrappers=1 "$movie" >probe 2>err
    have ! -s err
    for line in "codec_name=$codec" "profile=$profile" "codec_tag_string=$tag" "width=$width" \
        "height=$height" "pix_fmt=$pixels" color_range=tv color_space=bt709 color_transfer=bt709 \
        color_primaries=bt709 "r_frame_rate=$fps/1" "avg_frame_rate=$fps/1" \
        "nb_read_frames=$frames" start_time=0.000000 \
        "duration=$(awk "BEGIN { printf \"%.6f\", $frames / $fps }")"; do
        have_line "$line" probe
    done
    ffprobe -v error -select_streams a -show_entries \
        stream=codec_name,profile,sample_rate,channels,start_time \
        -of default=noprint_wrappers=1 "$movie" >probe
    for line in codec_name=aac profile=LC sample_rate=48000 channels=2 start_time=0.000000; do
        have_line "$line" probe
    done
    # Pictures a decoder shows in order, evenly; the first is a key frame, and so is one in every
    # two seconds.
    ffprobe -v error -select_streams v -show_entries packet=pts,flags -of csv=p=0 "$movie" |
        sort -n >packets
    awk -F, -v most="$((2 * fps))" '
        NR == 1 && $1 != 0 { bad = 1 }
        NR > 1 && $1 - last != 1000 { bad = 1 }
        { last = $1; since = /K/ ? 1 : since + 1; if (NR == 1 && !/K/ || since > most) bad = 1 }
        END { exit bad }' packets || complain "uneven pictures or key frames" "$movie"
}

check_decoding() {
    ffmpeg -nostdin -v error -xerror -err_detect explode -i "$movie" -f null - >out 2>err ||
        complain "ffmpeg cannot decode it" "$movie"
    have ! -s err
}

check_mediainfo() {
    mediainfo --Inform='Video;%Format%|%CodecID%|%Width%|%Height%|%FrameRate%|%FrameCount%|%colour_primaries%|%transfer_characteristics%|%matrix_coefficients%' \
        "$movie" >info
    have_line "$format|$tag|$width|$height|$fps.000|$frames|BT.709|BT.709|BT.709" info
    mediainfo --Inform='General;%VideoCount%|%AudioCount%|%IsStreamable%' "$movie" >info
    have_line '1|1|Yes' info
}

# The index in front; colours; times in thousandths of a frame without a gap; the sound's priming
# taken off by an edit.
check_boxes() {
    "$BOXES" "$movie" >boxes 2>err || complain "its boxes do not fit together" "$movie"
    awk '/^moov / { moov = NR } /^mdat / { if (!moov) exit 1; found = 1 } END { exit !found }' boxes ||
        complain 'mdat stands before moov' "$movie"
    stbl=moov/trak/mdia/minf/stbl
    have_line "$stbl/stsd/$tag/colr at=[0-9]* ncl[cx] primaries=1 transfer=1 matrix=1\( full=0\)\{0,1\}" boxes
    have_line "$stbl/stts at=[0-9]* ${frames}x1000" boxes
    have_line "moov/trak/mdia/mdhd at=[0-9]* timescale=${fps}000 duration=${frames}000" boxes
    have_line "moov/mvhd at=[0-9]* timescale=48000 duration=$samples" boxes
    have_line "moov/trak/mdia/mdhd at=[0-9]* timescale=48000 duration=$((samples + 1024))" boxes
    have_line "moov/trak/edts/elst at=[0-9]* duration=$samples from=1024 rate=1" boxes
    delay=2000 # frames that decoding runs ahead, in thousandths
    [ "$codec" = prores ] && delay=0
    have_line "moov/trak/edts/elst at=[0-9]* duration=$samples from=$delay rate=1" boxes
    if [ "$preset" = hevcalpha ]; then
        have_line "$stbl/stsd/hvc1/hvcC at=[0-9]* unit=32x1 unit=33x2 unit=34x2 unit=39x1" boxes
        # ffmpeg decodes no second layer, but reads its units' headers and what is said of it.
        ffmpeg -nostdin -v trace -i "$movie" -map 0:v -c copy -bsf:v trace_headers -frames:v 1 \
            -f null - 2>&1 | sed 's/^\[[^]]*\] //' >trace
        for line in 'vps_max_layers_minus1 .*= 1' 'vps_extension_flag .*= 1' \
            'alpha_channel_use_idc .*= 1' 'alpha_opaque_value .*= 255' \
            'nal_unit_type: 20(IDR_N_LP), nuh_layer_id: 1, temporal_id: 0'; do
            have_line "[0-9]* *$line" trace
        done
    fi
}

# Decoded, the sound is loudest in its first sample, and lacks none.
check_click() {
    ffmpeg -nostdin -v error -i "$movie" -map 0:a -ac 1 -f s16le - 2>err | od -An -v -td2 -w2 |
        awk -v wanted="$samples" '
            { level = $1 < 0 ? -$1 : $1; if (level > most) { most = level; at = NR - 1 } }
            END {
                print "a click at", at, "of", most, "in", NR, "samples"
                exit !(at == 0 && most > 15000 && NR >= wanted)
            }' >click || complain "$(cat click)" "$movie"
}
