# What scripts that talk to a service begin with, after promises.sh: one in service/, empty so far,
# and a home without a keyring.
export HOME="$folder/home"
unset XDG_STATE_HOME DBUS_SESSION_BUS_ADDRESS XDG_RUNTIME_DIR DISPLAY WAYLAND_DISPLAY SSL_CERT_FILE
unset http_proxy https_proxy all_proxy
mkdir -p home service/site

# serve [CERTIFICATE KEY]: starts it, and says which it is.
serve() {
    "$LOCAL_SERVICE" service "$@" &
    trap 'kill '$!'; wait; rm -rf "$folder"' EXIT
    tries=0
    until [ -s service/url ] || [ $tries = 300 ]; do
        sleep 0.05
        tries=$((tries + 1))
    done
    TARNWICK_SERVER=$(cat service/url)
    export TARNWICK_SERVER
}

token=tok-4f1d8a

# leaksNothing: no word of the last command holds the token.
leaksNothing() {
    ! grep -q -e "$token" -e device-77 out err || complain "a secret is said" "$@"
}

asked() { grep -q -e "$1" service/log || complain "not asked: $1"; }
