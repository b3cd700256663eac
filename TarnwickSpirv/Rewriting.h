// Changes to a module that was taken apart.
#pragma once

#include "TarnwickSpirv/Module.h"

namespace tarnwick::spirv {

void undecorate(Module& module, Id target);
// Gives a variable another storage class and removes its decorations.
void changeStorage(Module& module, Id variable, spv::StorageClass storage);
// Makes an input or output a private variable, which other code of the module fills or reads.
void makePrivate(Module& module, Id variable);

// Gives the entry point's function a new id, which is returned. Another function of main()'s id can
// then call it.
Id renameMain(Module& module);
void removeFunction(Module& module, Id function);

} // namespace tarnwick::spirv
