#include "TarnwickRender/Program/ParamBuffer.h"

#include <algorithm>

namespace tarnwick {

ParamBuffer::ParamBuffer(std::span<const ParamDecl> params, const ParamValues& values) {
    if (params.size() > few_.size())
        many_.resize(params.size());
    floats_ = many_.empty() ? std::span(few_).first(std::max<std::size_t>(params.size(), 1))
                            : std::span(many_);
    floats_[0] = 0;
    for (std::size_t index = 0; index < params.size(); ++index) {
        const auto value = values.find(params[index].name);
        floats_[index] = value == values.end() ? params[index].defaultValue : value->second;
    }
}

} // namespace tarnwick
