#include "TarnwickMSL/Translation/Passes/ControlFlow/Selections.h"

#include <llvm/ADT/PostOrderIterator.h>
#include <llvm/Analysis/PostDominators.h>
#include <llvm/IR/Dominators.h>
#include <llvm/Transforms/Utils/BasicBlockUtils.h>

namespace tarnwick::msl {

using namespace llvm;

static bool isSelection(const BasicBlock& block, const Structure& structure,
                        const DenseMap<const BasicBlock*, bool>& continues) {
    return succ_size(&block) == 2 && !structure.contains(&block) && !continues.contains(&block);
}

void structureSelections(Function& main, Structure& structure) {
    DominatorTree tree(main);
    PostDominatorTree postTree(main);
    DenseMap<const BasicBlock*, bool> continues;
    for (auto& [header, merge] : structure) {
        continues[merge.continueTarget] = true;
        for (BasicBlock* last : predecessors(merge.continueTarget))
            if (is_contained(successors(last), merge.merge))
                continues[last] = true; // leaves the loop or goes on
    }
    SmallVector<BasicBlock*, 32> headers;
    for (DomTreeNode* node : post_order(tree.getRootNode()))
        if (isSelection(*node->getBlock(), structure, continues))
            headers.push_back(node->getBlock());
    for (BasicBlock* header : headers) {
        BasicBlock* end = postTree.getNode(header)->getIDom()->getBlock();
        SmallVector<BasicBlock*, 4> own;
        for (BasicBlock* from : predecessors(end))
            if (tree.dominates(header, from))
                own.push_back(from);
        bool isOwn = own.size() == pred_size(end) && !structure.lookup(end).continueTarget;
        structure[header] = {isOwn ? end : SplitBlockPredecessors(end, own, ".merge", &tree),
                             nullptr};
    }
}

} // namespace tarnwick::msl
