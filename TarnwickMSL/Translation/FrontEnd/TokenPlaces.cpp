#include "TarnwickMSL/Translation/FrontEnd/TokenPlaces.h"

#include <clang/Basic/SourceManager.h>
#include <clang/Lex/Lexer.h>
#include <clang/Lex/Token.h>

namespace tarnwick::msl {

// A fresh place is a macro's expansion whose range is counted in characters, as the language's own
// macros' never are. It is as long as the token there: Clang measures it to find a token's end.
void TokenPlaces::makeUnique(clang::Token& token) {
    const clang::SourceLocation at = token.getLocation();
    if (taken.insert(at).second || token.is(clang::tok::eof))
        return;
    const clang::SourceLocation spelled = sources.getSpellingLoc(at);
    const unsigned length = clang::Lexer::MeasureTokenLength(spelled, sources, language);
    token.setLocation(sources.createExpansionLoc(spelled, at, at, length, false));
}

clang::SourceLocation usersPlace(const clang::SourceManager& sources, clang::SourceLocation at) {
    while (at.isMacroID()) {
        const clang::SrcMgr::ExpansionInfo& expansion =
            sources.getSLocEntry(sources.getFileID(at)).getExpansion();
        if (expansion.isExpansionTokenRange())
            break;
        at = expansion.getExpansionLocStart();
    }
    return at;
}

} // namespace tarnwick::msl
