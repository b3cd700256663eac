// Changes to a parsed module.
#pragma once

#include "TarnwickSpirv/Module.h"

namespace tarnwick::spirv {

void undecorate(Module& module, Id target);
// Gives a variable another storage class and removes its decorations.
void changeStorage(Module& module, Id variable, spv::StorageClass storage);
// Makes an input or output a private variable, which other code of the module fills or reads.
void makePrivate(Module& module, Id variable);

// Gives the function of the entry point a new id and returns it. Another function can then have the
// id of main() and call it.
Id renameMain(Module& module);
void removeFunction(Module& module, Id function);

} // namespace tarnwick::spirv
