#pragma once

#include "IsoImageTree.h"

#include <vector>

// Items that a change of the image reported, kept until the change is done and the engine can
// announce them one by one. Each holds a reference on its libisofs node, so a handler that
// removes, replaces or clears items between two announcements never leaves a dangling node
// behind; the tree tells which of them are still in the image. Lives on the UI thread.
class PendingItems {
public:
    PendingItems() = default;
    PendingItems(const PendingItems &) = delete;
    PendingItems &operator=(const PendingItems &) = delete;
    ~PendingItems();

    // A sink for the tree's members that collects into this list.
    IsoImageTree::ItemSink sink();
    void add(const IsoImageTree::Item &item);

    size_t size() const { return m_items.size(); }
    const IsoImageTree::Item &at(size_t i) const { return m_items[i]; }

private:
    std::vector<IsoImageTree::Item> m_items;
};
