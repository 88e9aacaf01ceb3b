// A node. Its handles are pointers to it.
#pragma once

#include <atomic>

#include "Attributes.h"
#include "ChildList.h"
#include "Common/Base/Lock.h"

struct AcnNodeOpaque {
    AcnNodeOpaque(std::u16string_view itsName, std::u16string_view itsType) : name(itsName), type(itsType) {}

    // Constant after construction.
    const Platform::WideString name;
    const Platform::WideString type;

    // Guarded by attributesLock.
    mutable Harbor::Lock attributesLock;
    NodeFabric::AttributeSet attributes;

    // Guarded by the structure lock (Tree.cpp). A parent owns its children.
    AcnNodeOpaque* parent = nullptr;
    NodeFabric::ChildList children;
    Platform::WideString pathAbove;  // of a clone's root: the path of the original's parent

    // The open handles to this node, and one for each child whose own count is not 0.
    std::atomic<std::uint64_t> holds{0};
};
