#include "TarnwickMSL/Translation/FrontEnd.h"

#include "TarnwickMSL/Translation/FrontEnd/IncludedFiles.h"
#include "TarnwickMSL/Translation/FrontEnd/Session.h"

#include <llvm/IR/Module.h>

namespace tarnwick::msl {

// With files of the host, in a session of its own.
static Parsed parseWithFiles(std::string_view source, const FileSystem& library,
                             llvm::LLVMContext& context, const ParseOptions& options) {
    const llvm::IntrusiveRefCntPtr<IncludedFiles> files(
        new IncludedFiles(library, options.includes));
    Session session(files, options.moreWarningsIn, files->folderNames());
    addTime(options.times, "library");
    reportRefusals(session.preprocessor(), *files);
    Parsed parsed = session.parse(source, context, options);
    parsed.declarations.reset(); // they end with the session
    parsed.files = files->read();
    return parsed;
}

Parsed parse(std::string_view source, const StandardLibrary& library, llvm::LLVMContext& context,
             const ParseOptions& options) {
    std::unique_ptr<Session>& session = library.session_->value;
    const FileSystem& files = *static_cast<FileSystem*>(library.files_.get());
    library.tidy();
    addTime(options.times, "take-down");
    if (!options.includes.empty())
        return parseWithFiles(source, files, context, options);
    if (session)
        if (std::optional<Parsed> parsed = session->again(source, context, options))
            return std::move(*parsed);
    if (!session || !session->takes(options))
        session = std::make_unique<Session>(files, options.moreWarningsIn);
    addTime(options.times, "library");
    Parsed parsed = session->parse(source, context, options);
    if (!parsed.failed || !session->hasGuessed())
        return parsed;
    session = std::make_unique<Session>(files, options.moreWarningsIn);
    return session->parse(source, context, options);
}

void StandardLibrary::tidy() const {
    if (session_->value)
        session_->value->tidy();
}

} // namespace tarnwick::msl
