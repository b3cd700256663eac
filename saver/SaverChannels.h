// The channels of a saver: files in its bundle.
#pragma once

#include "TarnwickPlatform/Bundle/Bundle.h"
#include "TarnwickRender/Channels/ChannelSources.h"

#include <string>
#include <vector>

namespace tarnwick {

// The files of Channels/ in the bundle. Their names are addresses: 0.jpg is channel 0; 3.metal is
// an episode, 3.json its settings, and 3.0.mp4 its channel 0. Compiles the episodes. A channel that
// cannot be read is black, and `remarks` gets a sentence. Blocks.
ChannelSources bundledChannels(const Bundle& bundle, gpu::Device& device,
                               std::vector<std::string>& remarks);

// Whether they are not to be opened again for a picture of another size: files have a size of their
// own, and episodes with particles or a previous frame would be computed from time 0 again.
bool keepState(const ChannelSources& channels);

} // namespace tarnwick
