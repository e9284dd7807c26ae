#include "host/graph/evaluate.h"

#include "host/core/log.h"
#include "host/graph/scene.h"

#include <algorithm>

namespace vesk::graph {

namespace {

Scene* sceneOf(const Cell& cell) { return cell.node.scene(); }

/// To be called before a cell's value or dirt changes.
void touch(Cell& cell) {
    Scene* scene = sceneOf(cell);
    if (!scene || !scene->preserving || cell.isDetached()) return;
    scene->journal.push_back(
        {Ref<Node>(&cell.node), &cell, cell.number, cell.data, cell.dirty, cell.isSet, cell.fresh});
}

/// Clean, and with it every ancestor's claim that all below is dirty.
void setClean(Cell& cell) {
    if (cell.dirty) {
        touch(cell);
        cell.dirty = false;
    }
    for (Cell* up = cell.parent; up && up->dirty; up = up->parent) {
        touch(*up);
        up->dirty = false;
    }
}

/// The cell below `source` that stands where `cell` stands below `top`; null where the shapes part.
Cell* mirrored(const Cell& cell, const Cell& top, Cell& source) {
    if (&cell == &top) return &source;
    Cell* up = mirrored(*cell.parent, top, source);
    if (!up) return nullptr;
    if (cell.isElement()) return up->isArray() ? &up->element(cell.logicalIndex) : nullptr;
    const int position = cell.attr.positionInParent();
    return up->isCompound() && static_cast<std::size_t>(position) < up->attr.children.size()
               ? &up->child(position)
               : nullptr;
}

/// What feeds the cell, through its own wire or an ancestor's.
Cell* feeding(const Cell& cell) {
    const Cell* top = cell.feedingAncestor();
    return top ? mirrored(cell, *top, *top->source) : nullptr;
}

constexpr short kBlocking = 2;

void reportCycle(const Cell& cell) {
    if (Scene* scene = sceneOf(cell)) ++scene->profile.cycles;
    log().warning("Cycle on '" + Plug(cell).name() + "' may not evaluate as expected.");
}

void takeValue(Cell& cell, const Cell& from) {
    if (from.attr.guessed) {
        // What a node would put out that nobody knows: the last value stands.
        const bool hasValue = from.isSet || from.feedingAncestor();
        if (!hasValue || from.attr.isNumber() != cell.attr.isNumber()) return;
    }
    touch(cell);
    if (cell.attr.isData()) {
        if (from.attr.isNumber()) {
            cell.number = from.number;
            cell.data = nullptr;
        } else if (from.data && !cell.attr.accepts(from.data->dataType()) && from.attr.fileType.empty()) {
            cell.data = nullptr;
        } else {
            cell.data = from.data;
        }
    } else {
        cell.number = cell.attr.coerced(from.number);
    }
}

// --- computing
// -------------------------------------------------------------------------------------------------------

/// Times a compute and takes the time of computes inside it out of its own.
class Stopwatch {
  public:
    explicit Stopwatch(Node& node) : scene_(*node.scene()), type_(node.type().name()) {
        ++scene_.profile.computes;
        if (!scene_.profile.timed) return;
        outer_ = inner_;
        inner_ = this;
        start_ = std::chrono::steady_clock::now();
    }
    ~Stopwatch() {
        if (inner_ != this) return;
        const std::chrono::nanoseconds took = std::chrono::steady_clock::now() - start_;
        Cost& cost = scene_.profile.byType[type_];
        ++cost.computes;
        cost.total += took;
        cost.own += took - below_;
        inner_ = outer_;
        if (outer_) outer_->below_ += took;
    }
    Stopwatch(const Stopwatch&) = delete;
    Stopwatch& operator=(const Stopwatch&) = delete;

  private:
    static inline Stopwatch* inner_ = nullptr;
    Scene& scene_;
    const std::string& type_;
    Stopwatch* outer_ = nullptr;
    std::chrono::steady_clock::time_point start_;
    std::chrono::nanoseconds below_{0};
};

void compute(Cell& cell) {
    const Ref<Node> node(&cell.node); // a compute may delete nodes
    const Stopwatch watch(*node);
    Scene& scene = *node->scene();
    cell.computing = true;
    ++node->computing;
    ++scene.pullDepth;
    const ComputeResult result = node->compute(cell);
    --scene.pullDepth;
    --node->computing;
    cell.computing = false;
    // The requested plug is clean now, whatever the node said. Its children too if the node did the work; one
    // that does not know the whole is asked for each child.
    if (result == ComputeResult::Done && !cell.isLeaf()) {
        cell.walk([](Cell& one) { setClean(one); });
    }
    setClean(cell);
}

bool influences(const Cell& input, const Attribute& output) {
    const auto& outs = input.node.affectedBy(input.attr);
    return std::any_of(outs.begin(), outs.end(), [&](const Attribute* out) {
        return out == &output || output.isBelow(*out) || out->isBelow(output);
    });
}

/// Computes what stands upstream of an output, sources first, without native recursion. What a compute would
/// not have asked for is computed too: this is the way of very long chains only.
void computeUpstream(Cell& output) {
    struct Frame {
        Cell* output;
        std::vector<Cell*> sources;
    };
    const auto sourcesOf = [](Cell& of) {
        Frame frame{&of, {}};
        of.node.eachCell([&](Cell& input) {
            if (!input.dirty || !input.source || !influences(input, of.attr)) return;
            Cell* from = input.source;
            if (from->dirty && !from->computing && from->node.isComputed(from->attr) &&
                from->node.nodeState() != kBlocking) {
                frame.sources.push_back(from);
            }
        });
        return frame;
    };
    std::vector<Frame> stack;
    stack.push_back(sourcesOf(output));
    while (!stack.empty()) {
        Frame& top = stack.back();
        if (top.sources.empty()) {
            Cell* done = top.output;
            stack.pop_back();
            if (stack.empty()) continue;
            done->computing = false;
            if (!done->dirty) continue;
            if (done->isLeaf()) {
                compute(*done);
            } else {
                clean(*done);
            }
            continue;
        }
        Cell* next = top.sources.back();
        top.sources.pop_back();
        if (!next->dirty || next->computing) continue;
        next->computing = true; // on the stack: a cycle does not enter it twice
        stack.push_back(sourcesOf(*next));
    }
}

/// Cleans a leaf that is fed by a wire. Inputs may feed inputs: such a run is walked without native
/// recursion.
void pullThroughWires(Cell& cell, Cell& source) {
    const auto passesOn = [](Cell& from) {
        return from.dirty && from.isLeaf() && from.node.nodeState() != kBlocking && feeding(from);
    };
    const auto take = [](Cell& to, Cell& from) {
        if (from.node.nodeState() != kBlocking) {
            clean(from);
            takeValue(to, from);
        }
        setClean(to);
    };
    if (!passesOn(source)) return take(cell, source);
    std::vector<Cell*> run{&cell};
    cell.computing = true;
    for (Cell* from = &source; passesOn(*from); from = feeding(*from)) {
        if (from->computing) {
            reportCycle(*from);
            setClean(*from);
            break;
        }
        from->computing = true;
        run.push_back(from);
    }
    for (auto at = run.rbegin(); at != run.rend(); ++at) {
        (*at)->computing = false;
        take(**at, *feeding(**at));
    }
}

/// Finds elements by indices that come in ascending order, without a search.
class ElementWalk {
  public:
    explicit ElementWalk(const Cell& array) : array_(array) {}
    /// Null when there is none.
    Cell* at(int index) {
        const auto& elements = array_.children;
        while (place_ < elements.size() && elements[place_]->logicalIndex < index)
            ++place_;
        return place_ < elements.size() && elements[place_]->logicalIndex == index ? elements[place_].get()
                                                                                   : nullptr;
    }

  private:
    const Cell& array_;
    std::size_t place_ = 0;
};

/// The elements of an array that a wire feeds, its own or an ancestor's: those that are there at the other
/// end.
void takeElements(Cell& array, Cell& from) {
    ElementWalk present(array), sources(from);
    for (auto& element : from.children) {
        if (!present.at(element->logicalIndex)) (void)array.element(element->logicalIndex);
    }
    for (auto& element : array.children) {
        const Cell* source = sources.at(element->logicalIndex);
        const bool exists = source && source->isInUse();
        if (element->isSet == exists || element->source) continue;
        touch(*element);
        if (exists) {
            element->isSet = true;
        } else {
            element->resetToDefault();
        }
    }
}

void cleanArray(Cell& array) {
    if (Cell* from = feeding(array)) {
        if (from->node.nodeState() != kBlocking) {
            clean(*from);
            takeElements(array, *from);
        }
    } else if (array.dirty && array.children.empty() && array.node.isComputed(array.attr) &&
               !array.computing && !(array.fresh && array.node.computing)) {
        compute(array);
    }
    if (!array.settled) {
        bool settled = array.attr.isNumber();
        for (std::size_t i = 0; i < array.children.size(); ++i) {
            Cell& element = *array.children[i];
            // One that is evaluated may change others: the next walk will find them settled.
            settled = settled && element.isSet && !element.dirty && !element.source;
            clean(element);
        }
        array.settled = settled;
    }
    setClean(array);
}

} // namespace

void clean(Cell& cell) {
    if ((!cell.dirty && cell.isLeaf()) || cell.isDetached()) return;
    if (cell.isArray()) return cleanArray(cell);
    if (cell.isCompound()) {
        if (cell.dirty && !cell.feedingAncestor() && cell.node.isComputed(cell.attr) && !cell.computing &&
            !(cell.fresh && cell.node.computing)) {
            compute(cell);
        }
        const int count = static_cast<int>(cell.attr.children.size());
        for (int i = 0; i < count; ++i)
            clean(cell.child(i));
        setClean(cell);
        return;
    }
    if (Cell* from = feeding(cell)) return pullThroughWires(cell, *from);
    if (!sceneOf(cell) || !cell.node.isComputed(cell.attr)) {
        setClean(cell);
        return;
    }
    if (cell.computing) {
        reportCycle(cell);
        return;
    }
    if (cell.fresh && cell.node.computing) return;
    if (sceneOf(cell)->pullDepth >= kMaxPullDepth) {
        cell.computing = true;
        computeUpstream(cell);
        cell.computing = false;
    }
    compute(cell);
}

double pullNumber(Cell& cell) {
    clean(cell);
    return cell.number;
}

Ref<Data> pullData(Cell& cell) {
    clean(cell);
    return cell.data;
}

std::vector<double> pullNumbers(Cell& compound) {
    clean(compound);
    std::vector<double> numbers;
    for (std::size_t i = 0; i < compound.attr.children.size(); ++i) {
        numbers.push_back(compound.child(static_cast<int>(i)).number);
    }
    return numbers;
}

// --- dirt
// ------------------------------------------------------------------------------------------------------------

namespace {

/// One spreading of dirt: an explicit stack of cells whose dependants are to be dirtied.
class Spread {
  public:
    void start(Cell& cell) {
        stack_.push_back(&cell);
        while (!stack_.empty()) {
            Cell& next = *stack_.back();
            stack_.pop_back();
            dependantsOf(next);
        }
    }

    /// Marks the cell and all below; what was dirty already has spread already.
    void mark(Cell& cell) { mark(cell, false); }

  private:
    /// An element marked `withArray` has no more dependants than its array, unless it has them for itself.
    void mark(Cell& cell, bool withArray) {
        if (cell.dirty) return;
        touch(cell);
        cell.dirty = true;
        cell.fresh = false;
        if (cell.parent) cell.parent->settled = false;
        if (!withArray || !cell.destinations.empty() || cell.node.wantsDependents()) stack_.push_back(&cell);
        const bool isArray = cell.isArray();
        for (auto& below : cell.children) {
            if (below) mark(*below, isArray);
        }
    }

    void dependantsOf(Cell& cell) {
        Node& node = cell.node;
        if (std::string_view(cell.attr.longName) == "nodeState") askAgain(node);
        for (Attribute* out : node.affectedBy(cell.attr))
            markOutputs(node, *out);
        for (Cell* to : cell.destinations)
            mark(*to);
        for (Cell* up = cell.parent; up; up = up->parent) {
            for (Cell* to : up->destinations)
                mark(*to);
        }
        if (node.type().isDag && &cell.attr == dagAttributes().worldMatrix.get()) {
            for (DagNode* child : static_cast<DagNode&>(node).children()) {
                mark(child->cell(*dagAttributes().parentMatrix));
            }
        }
        if (!node.wantsDependents()) return;
        std::vector<Cell*> more;
        node.dependents(cell, more);
        for (Cell* one : more)
            mark(*one);
    }

    /// What a blocking node feeds took the old values while the node's outputs stayed dirty.
    void askAgain(Node& node) {
        node.eachCell([this](const Cell& out) {
            if (!out.dirty) return;
            for (Cell* to : out.destinations)
                mark(*to);
        });
    }

    void markOutputs(Node& node, const Attribute& out) {
        if (Cell* there = node.cellIfThere(out)) return mark(*there);
        const Attribute* top = &out;
        while (top->parent)
            top = top->parent;
        if (top == &out) return;
        Cell* above = node.cellIfThere(*top);
        if (!above) return;
        std::vector<Cell*> found;
        above->walk([&](Cell& one) {
            if (&one.attr == &out && !one.isElement()) found.push_back(&one);
        });
        for (Cell* one : found)
            mark(*one);
    }

    std::vector<Cell*> stack_;
};

} // namespace

void spreadDirt(Cell& cell) { Spread().start(cell); }

void markDirty(Cell& cell) {
    Spread spread;
    spread.mark(cell);
    spread.start(cell);
}

// --- writing
// ---------------------------------------------------------------------------------------------------------

Outcome checkWritable(const Cell& cell) {
    bool locked = false;
    for (const Cell* at = &cell; at; at = at->parent)
        locked = locked || at->locked;
    if (locked || cell.feedingAncestor()) {
        return Outcome::fail("The attribute '" + Plug(cell).name() +
                             "' is locked or connected and cannot be modified.");
    }
    if (!cell.attr.writable)
        return Outcome::fail("The attribute '" + Plug(cell).name() + "' is not writable.");
    return {};
}

namespace {

/// An output that its own node's compute writes through a plug counts as clean, like one set through the data
/// block.
bool isOwnOutput(const Cell& cell) { return cell.node.computing > 0 && cell.node.isComputed(cell.attr); }

void stored(Cell& cell) {
    cell.isSet = true;
    if (isOwnOutput(cell)) {
        cell.fresh = true;
        setClean(cell);
        return;
    }
    if (!cell.node.isComputed(cell.attr)) setClean(cell);
    spreadDirt(cell);
    cell.node.valueStored(cell);
}

Ref<Data> placed(Ref<Data> value) {
    if (!value) return value;
    if (value->isPlaced()) value = value->clone();
    value->markPlaced();
    return value;
}

} // namespace

Outcome storeNumber(Cell& cell, double value) {
    if (!isOwnOutput(cell)) {
        if (auto outcome = checkWritable(cell); !outcome) return outcome;
    }
    touch(cell);
    cell.number = cell.attr.coerced(value);
    stored(cell);
    return {};
}

Outcome storeData(Cell& cell, Ref<Data> value) {
    if (!isOwnOutput(cell)) {
        if (auto outcome = checkWritable(cell); !outcome) return outcome;
    }
    if (value && cell.attr.fileType.empty() && !cell.isArray() && !cell.attr.accepts(value->dataType())) {
        return Outcome::fail("The attribute '" + Plug(cell).name() + "' does not accept this type of data.");
    }
    touch(cell);
    cell.data = placed(std::move(value));
    stored(cell);
    return {};
}

void putNumber(Cell& cell, double value, bool nowClean) {
    touch(cell);
    cell.number = cell.attr.coerced(value);
    cell.isSet = true;
    cell.fresh = true;
    if (nowClean) setClean(cell);
}

void putData(Cell& cell, Ref<Data> value, bool nowClean) {
    touch(cell);
    cell.data = value.get() == cell.data.get() ? std::move(value) : placed(std::move(value));
    cell.isSet = true;
    cell.fresh = true;
    if (nowClean) setClean(cell);
}

void markClean(Cell& cell) {
    cell.walk([](Cell& one) { setClean(one); });
}

void copyCell(Cell& to, Cell& from) {
    clean(from);
    if (to.isArray() && from.isArray()) {
        for (auto& element : from.children)
            copyCell(to.element(element->logicalIndex), *element);
    } else if (to.isCompound() && from.isCompound()) {
        const auto count = std::min(to.attr.children.size(), from.attr.children.size());
        for (std::size_t i = 0; i < count; ++i) {
            copyCell(to.child(static_cast<int>(i)), from.child(static_cast<int>(i)));
        }
    } else if (to.isLeaf() && from.isLeaf()) {
        if (to.attr.isNumber() && from.attr.isNumber()) {
            putNumber(to, from.number);
        } else if (!to.attr.isNumber() && !from.attr.isNumber()) {
            putData(to, from.data);
        }
    }
    setClean(to);
}

namespace {

/// Whether the cell, or one below, is being computed: whoever does that goes on with it afterwards.
bool isComputing(Cell& cell) {
    bool computing = false;
    cell.walk([&](const Cell& one) { computing = computing || one.computing; });
    return computing;
}

/// Takes out, or empties where wires hang on them or a compute of theirs runs, the elements that are not
/// among the `count` wanted ones, whose indices `wanted` gives.
template <class IndexOf>
void dropOthers(Cell& array, std::size_t count, IndexOf wanted) {
    const bool preserving = sceneOf(array) && sceneOf(array)->preserving;
    std::size_t kept = count;
    for (std::size_t i = array.children.size(); i-- > 0;) {
        Cell& old = *array.children[i];
        while (kept > 0 && wanted(kept - 1) > old.logicalIndex)
            --kept;
        if (kept > 0 && wanted(kept - 1) == old.logicalIndex) continue;
        if (!preserving && !isComputing(old) && !old.hasWiresBelow(true) && !old.hasWiresBelow(false)) {
            array.removeElement(old.logicalIndex);
        } else {
            old.walk([](Cell& cell) {
                touch(cell);
                cell.resetToDefault();
            });
        }
    }
}

void takeOver(Cell& to, const Cell& from) {
    if (to.isArray()) return replaceElements(to, from.children);
    touch(to);
    to.number = from.number;
    to.data = from.data;
    to.isSet = from.isSet;
    to.fresh = true;
    for (const auto& below : from.children) {
        if (below) takeOver(to.child(below->attr), *below);
    }
}

} // namespace

void replaceElements(Cell& array, const std::vector<std::unique_ptr<Cell>>& elements) {
    dropOthers(array, elements.size(), [&](std::size_t i) { return elements[i]->logicalIndex; });
    ElementWalk present(array);
    for (const auto& made : elements) {
        Cell* there = present.at(made->logicalIndex);
        Cell& element = there ? *there : array.element(made->logicalIndex);
        takeOver(element, *made);
        element.isSet = true; // it exists, even while it shows the default
    }
    array.fresh = true;
}

void replaceNumbers(Cell& array, std::span<const int> indices, std::span<const double> numbers) {
    const auto put = [&](Cell& element, std::size_t i) {
        touch(element);
        element.number = numbers[i];
        element.isSet = true;
        element.fresh = true;
    };
    // Mostly the elements are those of the last time.
    std::size_t done = 0;
    const std::size_t common = std::min(indices.size(), array.children.size());
    for (; done < common && array.children[done]->logicalIndex == indices[done]; ++done)
        put(*array.children[done], done);
    if (done < array.children.size())
        dropOthers(array, indices.size(), [&](std::size_t i) { return indices[i]; });
    array.children.reserve(indices.size());
    ElementWalk present(array);
    for (; done < indices.size(); ++done) {
        Cell* there = present.at(indices[done]);
        put(there ? *there : array.element(indices[done]), done);
    }
    array.fresh = true;
}

// --- other times
// -----------------------------------------------------------------------------------------------------

Preserve::Preserve(Scene& scene)
    : scene_(scene), start_(scene.journal.size()), outermost_(!scene.preserving) {
    scene_.preserving = true;
}

Preserve::~Preserve() {
    auto& journal = scene_.journal;
    while (journal.size() > start_) {
        auto& saved = journal.back();
        if (saved.node->isAlive()) {
            saved.cell->number = saved.number;
            saved.cell->data = std::move(saved.data);
            saved.cell->dirty = saved.dirty;
            saved.cell->isSet = saved.isSet;
            saved.cell->fresh = saved.fresh;
            if (saved.cell->parent) saved.cell->parent->settled = false;
        }
        journal.pop_back();
    }
    if (outermost_) scene_.preserving = false;
}

} // namespace vesk::graph
