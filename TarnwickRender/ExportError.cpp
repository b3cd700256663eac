#include "TarnwickRender/ExportError.h"

namespace tarnwick {
namespace {

struct Sentence {
    std::string operator()(const ExportError::Setup& setup) const {
        return "Export could not start: " + setup.reason;
    }
    std::string operator()(const ExportError::Render& render) const {
        return "The GPU failed while drawing frame " + std::to_string(render.frame) + ".";
    }
    std::string operator()(const ExportError::DeviceLost& lost) const {
        return "The device was lost twice while it drew frame " + std::to_string(lost.frame) + ".";
    }
    std::string operator()(const ExportError::Writer& writer) const {
        return "Writing the video failed: " + writer.reason;
    }
    std::string operator()(const ExportError::Input& input) const { return input.sentence; }
    std::string operator()(const ExportError::Cancelled&) const { return "Export cancelled."; }
};

} // namespace

ExportError::ExportError(Case which)
    : std::runtime_error(std::visit(Sentence(), which)), which_(std::move(which)) {}

} // namespace tarnwick
