#pragma once
// All nodes of a session: names, the DAG's roots, the selection, the time.

#include "host/core/outcome.h"
#include "host/graph/dag.h"
#include "host/graph/evaluate.h"
#include "host/graph/node_type.h"
#include "host/graph/selection.h"

#include <map>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace vesk::graph {

/// Frame units by name as scene files write them (`film`, `pal`, `ntsc`, `24fps` ...); 0 for an unknown one.
double framesPerSecond(std::string_view unitName);

class Scene {
  public:
    explicit Scene(TypeRegistry& types);
    ~Scene();
    Scene(const Scene&) = delete;
    Scene& operator=(const Scene&) = delete;

    TypeRegistry& types() { return types_; }

    // --- nodes ---

    /// A node of a registered type. `#` in the name becomes the next free number, a taken name gets its
    /// trailing number raised, an empty one is type + number. A DAG node goes below `parent`, or below the
    /// world.
    Ref<Node> create(const NodeType& type, std::string_view name = {}, DagNode* parent = nullptr);
    /// Disconnects and removes the node; a DAG node goes with everything below it that has no other parent.
    void remove(Node& node);
    /// Removes all but the session's own nodes and puts those back to their defaults.
    void clear();
    Outcome rename(Node& node, std::string_view name);
    /// A free name made from `wish` by the rules of `create`, among siblings below `parent` for DAG nodes.
    std::string freeName(std::string_view wish, const DagNode* parent, bool isDag,
                         const Node* self = nullptr) const;

    /// Live nodes in the order of their making.
    std::vector<Node*> nodes() const;
    std::size_t nodeCount() const { return alive_; }
    /// The node by name or (partial) path; null when none or several match, `ambiguous` tells which.
    Node* find(std::string_view nameOrPath, bool* ambiguous = nullptr) const;
    /// All nodes that match a name, a path, or a pattern with `*` and `?`.
    std::vector<Node*> match(std::string_view pattern) const;
    const std::vector<Node*>& named(std::string_view shortName) const;

    DagNode& world() { return *world_; }
    const DagNode& world() const { return *world_; }
    /// Puts a DAG node below another parent (the world for null); `additional` keeps the old one: an
    /// instance.
    Outcome reparent(DagNode& node, DagNode* parent, bool additional = false);
    Outcome removeInstance(DagNode& node, DagNode& parent);

    // --- time ---

    /// The current frame number in the UI unit, as `time1.outTime` holds it.
    double frame() const;
    void setFrame(double frame);
    double framesPerSecond() const { return fps_; }
    void setFramesPerSecond(double fps) { fps_ = fps; }
    double ticksPerFrame() const { return 6000.0 / fps_; }

    Selection selection;
    std::string fileName; ///< full path of the scene, empty when never saved
    struct Playback {
        double min = 1, max = 24, animationStart = 1, animationEnd = 48;
    } playback;
    std::map<std::string, std::string> fileInfo;
    /// Plug-ins that files asked for and that are not there, with their versions.
    std::map<std::string, std::string> missingPlugins;
    /// While a file is read: nodes it makes, unknown types become placeholders.
    bool readingFile = false;

    Profile profile;

    // --- for the evaluator ---
    struct Saved {
        Ref<Node> node;
        Cell* cell;
        double number;
        Ref<Data> data;
        bool dirty, isSet, fresh;
    };
    std::vector<Saved> journal;
    bool preserving = false;
    int pullDepth = 0;

  private:
    void insertName(Node& node);
    void eraseName(Node& node);
    void removeOne(Node& node);
    void closeHoles();
    long lowestFree(const std::string& stem) const;

    TypeRegistry& types_;
    std::vector<Ref<Node>> nodes_; ///< holes where nodes were removed
    std::size_t alive_ = 0;
    std::unordered_map<std::string, std::vector<Node*>> byName_;
    /// By the front of a numbered name: every number below this one is taken.
    mutable std::unordered_map<std::string, long> lowestFree_;
    std::unique_ptr<NodeType> worldType_;
    Ref<DagNode> world_;
    double fps_ = 24;
};

/// Types every session has below its own: `node`, `dagNode`, `time`.
void registerBaseTypes(TypeRegistry& types);

} // namespace vesk::graph
