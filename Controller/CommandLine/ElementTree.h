// The whole tree of a window, in few requests.
#pragma once

#include <cstddef>
#include <vector>

#include "Controller/CommandLine/Session.h"

namespace Zorvex::Controller {

struct TreeNode {
    AAObjectIdentifier identifier;
    std::ptrdiff_t parent = -1;  // place in the list; -1: the root
    std::size_t depth = 0;       // 0: the root
    std::vector<std::size_t> children;
};

struct ElementTree {
    std::vector<TreeNode> nodes;  // the root first; parents before children, siblings in order
    bool cut = false;             // there is more than the limits allow
};

// The root is the window's own element. `depth`: levels below it.
ElementTree ReadTree(Session& session, std::size_t depth, std::size_t maximum);

// The places of all nodes, each before its children, as the tree is printed.
std::vector<std::size_t> DepthFirst(const ElementTree& tree);

}  // namespace Zorvex::Controller
