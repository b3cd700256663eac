#include "TarnwickMSL/Translation/FrontEnd/TokenPlaces.h"

#include <clang/Basic/SourceManager.h>
#include <clang/Lex/Lexer.h>
#include <clang/Lex/Token.h>

namespace tarnwick::msl {

// A new place is a macro expansion with a character range; macros of the program have token ranges.
// Its length is that of the token there: Clang measures it to find the token's end.
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
