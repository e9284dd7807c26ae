#pragma once
// A list of nodes, plugs and components, as selections and selection lists hold it.

#include "host/graph/dag.h"
#include "host/graph/plug.h"

#include <string>
#include <string_view>
#include <vector>

namespace vesk::graph {

struct SelectionItem {
    Ref<Node> node;
    DagPath path;          ///< empty for nodes outside the DAG
    Plug plug;             ///< null unless a plug was named
    Ref<Object> component; ///< null unless components were named

    bool sameThing(const SelectionItem& other) const;
    /// Names as commands take them; components may need several.
    std::vector<std::string> texts() const;
};

class Selection {
  public:
    /// Nodes that left the scene drop out.
    const std::vector<SelectionItem>& items() const;
    void add(SelectionItem item, bool mergeWithExisting = true);
    void remove(const SelectionItem& item);
    void clear() { items_.clear(); }

  private:
    mutable std::vector<SelectionItem> items_;
};

/// Resolves a name, a pattern, a plug (`a.tx`) or components (`a.vtx[0:3]`). Empty when nothing matches.
std::vector<SelectionItem> resolve(Scene& scene, std::string_view text);

} // namespace vesk::graph
