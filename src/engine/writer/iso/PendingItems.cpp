#include "PendingItems.h"

PendingItems::~PendingItems() {
    for (const IsoImageTree::Item &item : m_items) {
        if (item.node)
            iso_node_unref(item.node);
    }
}

IsoImageTree::ItemSink PendingItems::sink() {
    return [this](const IsoImageTree::Item &item) { add(item); };
}

void PendingItems::add(const IsoImageTree::Item &item) {
    if (item.node)
        iso_node_ref(item.node);
    m_items.push_back(item);
}
