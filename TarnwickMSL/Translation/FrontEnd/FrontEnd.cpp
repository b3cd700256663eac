#include "TarnwickMSL/Translation/FrontEnd.h"

#include "TarnwickMSL/Translation/FrontEnd/Session.h"

#include <llvm/IR/Module.h>

namespace tarnwick::msl {

Parsed parse(std::string_view source, const StandardLibrary& library, llvm::LLVMContext& context,
             const ParseOptions& options) {
    std::unique_ptr<Session>& session = library.session_->value;
    library.tidy();
    addTime(options.times, "take-down");
    if (session)
        if (std::optional<Parsed> parsed = session->again(source, context, options))
            return std::move(*parsed);
    if (!session || !session->takes(options))
        session = std::make_unique<Session>(*static_cast<FileSystem*>(library.files_.get()),
                                            options.moreWarningsIn);
    addTime(options.times, "library");
    return session->parse(source, context, options);
}

void StandardLibrary::tidy() const {
    if (session_->value)
        session_->value->tidy();
}

} // namespace tarnwick::msl
