#include "host/scene/ascii_writer.h"

#include "host/commands/ui_units.h"
#include "host/data/packed_data.h"
#include "host/nodes/mesh_file.h"
#include "host/nodes/mesh_node.h"
#include "host/nodes/placeholder.h"
#include "host/scene/formats/atomic_file.h"
#include "host/scene/value_text.h"

#include <algorithm>
#include <set>

namespace vesk::scene {

using formats::AtomicFile;
using graph::Attribute;
using graph::AttrKind;
using graph::Cell;
using graph::DagNode;
using graph::Node;

namespace {

constexpr std::size_t kElementsPerStatement = 500;

/// Storage attributes of a mesh: written from the mesh itself, not from their cells.
bool isMeshStorage(const Node& node, const Attribute& attribute) {
    if (!node.type().isA("mesh")) return false;
    static const std::set<std::string> kNames = {"vrts",        "edge",     "face",         "normals",
                                                 "uvSet",       "colorSet", "currentUVSet", "currentColorSet",
                                                 "cachedInMesh"};
    return kNames.contains(attribute.longName);
}

class Writer {
  public:
    Writer(graph::Scene& scene, const std::vector<Node*>& nodes, AtomicFile& file)
        : scene_(scene), file_(file), chosen_(nodes.begin(), nodes.end()) {}

    void write(const std::string& name) {
        header(name);
        for (Node* node : inOrder()) {
            create(*node);
            attributes(*node);
        }
        for (Node* node : inOrder())
            moreInstances(*node);
        for (Node* node : scene_.nodes()) {
            if (node->isDefault) defaultNode(*node);
        }
        // In the order of the file, which is that of the scene that it gives.
        for (Node* node : scene_.nodes()) {
            if (node->isDefault) wires(*node);
        }
        for (Node* node : inOrder()) {
            if (!node->isDefault) wires(*node);
        }
        file_.write("// End of " + name + "\n");
    }

  private:
    bool isChosen(const Node& node) const { return chosen_.contains(const_cast<Node*>(&node)); }

    void header(const std::string& name) {
        file_.write("//Maya ASCII 2012 scene\n//Name: " + name + "\n");
        file_.write("requires maya \"2012\";\n");
        auto plugins = scene_.missingPlugins;
        for (const Node* node : chosen_) {
            if (!node->type().plugin.empty()) plugins.emplace(node->type().plugin, "1.0");
        }
        for (const auto& [plugin, version] : plugins) {
            file_.write("requires " + quotedText(plugin) + " " + quotedText(version) + ";\n");
        }
        file_.write("currentUnit -l centimeter -a degree -t " + timeUnit() + ";\n");
        for (const auto& [key, value] : scene_.fileInfo) {
            file_.write("fileInfo " + quotedText(key) + " " + quotedText(value) + ";\n");
        }
    }

    std::string timeUnit() const {
        for (const char* unit : {"film", "pal", "ntsc", "game", "show", "palf", "ntscf"}) {
            if (graph::framesPerSecond(unit) == scene_.framesPerSecond()) return unit;
        }
        return formatExact(scene_.framesPerSecond()) + "fps";
    }

    /// DAG nodes from the top down, each after its first parent; then the others as they were made.
    const std::vector<Node*>& inOrder() {
        if (!order_.empty()) return order_;
        std::set<const Node*> done;
        const auto visit = [&](const auto& self, DagNode& node) -> void {
            if (!done.insert(&node).second) return;
            if (isChosen(node)) order_.push_back(&node);
            for (DagNode* child : node.children()) {
                if (child->parents().front() == &node) self(self, *child);
            }
        };
        visit(visit, scene_.world());
        for (Node* node : scene_.nodes()) {
            if (!node->type().isDag && isChosen(*node) && !node->isDefault) order_.push_back(node);
        }
        return order_;
    }

    void create(Node& node) {
        file_.write("createNode " + node.type().name() + " -n " + quotedText(node.name()));
        if (node.isDefault) file_.write(" -s");
        if (node.type().isDag) {
            const DagNode* parent = static_cast<DagNode&>(node).parents().front();
            if (!parent->isWorld() && isChosen(*parent))
                file_.write(" -p " + quotedText(parent->uniqueName()));
        }
        file_.write(";\n");
    }

    void moreInstances(Node& node) {
        if (!node.type().isDag) return;
        const auto& parents = static_cast<DagNode&>(node).parents();
        for (std::size_t i = 1; i < parents.size(); ++i) {
            if (!isChosen(*parents[i])) continue;
            const std::string shape = node.type().isShape ? "-s " : "";
            file_.write("parent " + shape + "-nc -r -add " + quotedText(node.uniqueName()) + " " +
                        quotedText(parents[i]->uniqueName()) + ";\n");
        }
    }

    // --- attributes
    // --------------------------------------------------------------------------------------------------

    void attributes(Node& node) {
        for (const auto& attribute : node.dynamicAttributes()) {
            // What a placeholder made up by itself comes to be again when the file is read.
            if (!attribute->parent && !nodes::Placeholder::made(*attribute)) declare(*attribute);
        }
        for (int i = 0; i < node.attributeCount(); ++i) {
            const Attribute* attribute = node.attributeAt(i);
            if (!attribute || attribute->parent || isMeshStorage(node, *attribute)) continue;
            if (Cell* cell = node.cellIfThere(*attribute)) values(*cell);
        }
        if (auto* mesh = dynamic_cast<nodes::MeshNode*>(&node); mesh && !mesh->hasInput()) meshStorage(*mesh);
        if (!node.aliases.empty()) aliases(node);
        if (node.isLocked) file_.write("lockNode -l on;\n");
    }

    void aliases(const Node& node) {
        file_.write("\tsetAttr \".aal\" -type \"attributeAlias\" {");
        const char* separator = "";
        for (const auto& alias : node.aliases) {
            std::string path = alias.attribute->longName;
            if (alias.logicalIndex >= 0) path += '[' + std::to_string(alias.logicalIndex) + ']';
            file_.write(separator + quotedText(alias.name) + "," + quotedText(path));
            separator = ",";
        }
        file_.write("} ;\n");
    }

    void declare(const Attribute& attribute) {
        file_.write("\taddAttr");
        if (attribute.keyable) file_.write(" -k true");
        if (attribute.hidden) file_.write(" -h true");
        if (attribute.usedAsColor) file_.write(" -uac");
        if (attribute.array) file_.write(attribute.indexMatters ? " -m" : " -m -im false");
        if (!attribute.storable) file_.write(" -s false");
        if (!attribute.readable) file_.write(" -r false");
        if (!attribute.writable) file_.write(" -w false");
        file_.write(" -ci true -sn " + quotedText(attribute.shortName) + " -ln " +
                    quotedText(attribute.longName));
        limits(attribute);
        if (attribute.kind == AttrKind::Enum) {
            std::string fields;
            for (const auto& field : attribute.fields) {
                if (!fields.empty()) fields += ':';
                fields += field.name + "=" + std::to_string(field.value);
            }
            file_.write(" -en " + quotedText(fields));
        }
        if (attribute.parent) file_.write(" -p " + quotedText(attribute.parent->longName));
        if (attribute.kind == AttrKind::Typed) {
            file_.write(" -dt " + quotedText(attribute.typeName()));
        } else if (attribute.kind == AttrKind::Compound) {
            file_.write(" -at \"compound\" -nc " + std::to_string(attribute.children.size()));
        } else {
            file_.write(" -at " + quotedText(attribute.typeName()));
        }
        file_.write(";\n");
        for (const auto& child : attribute.children)
            declare(*child);
    }

    void limits(const Attribute& attribute) {
        if (!attribute.isNumber()) return;
        const auto put = [&](const char* flag, double value) {
            file_.write(flag);
            file_.putNumber(commands::toUi(scene_, attribute.unit, value));
        };
        if (attribute.defaultNumber != 0) put(" -dv ", attribute.defaultNumber);
        if (attribute.min) put(" -min ", *attribute.min);
        if (attribute.max) put(" -max ", *attribute.max);
        if (attribute.softMin) put(" -smn ", *attribute.softMin);
        if (attribute.softMax) put(" -smx ", *attribute.softMax);
    }

    static bool hasFlags(const Cell& cell) {
        // Wires bring their lock with them.
        return (cell.locked && !cell.source) || cell.keyable >= 0 || cell.channelBox >= 0;
    }

    void flags(const Cell& cell) {
        if (cell.locked && !cell.source) file_.write(" -l on");
        if (cell.keyable >= 0) file_.write(cell.keyable ? " -k on" : " -k off");
        if (cell.channelBox >= 0) file_.write(cell.channelBox ? " -cb on" : " -cb off");
    }

    std::string relativeName(const Cell& cell) const {
        // Without aliases: they are declared behind the values.
        std::string path;
        for (const Cell* at = &cell; at; at = at->parent) {
            if (at->isElement()) {
                path = '[' + std::to_string(at->logicalIndex) + ']' + path;
                continue;
            }
            path = at->attr.shortName + path;
            if (at->parent) path = '.' + path;
        }
        return '.' + path;
    }

    void values(Cell& cell) {
        if (!cell.attr.storable) return;
        if (cell.node.isComputed(cell.attr) && !cell.attr.writable) return;
        if (cell.isArray()) {
            if (cell.attr.packed) return packed(cell);
            for (auto& element : cell.children)
                values(*element);
            return;
        }
        const bool isTuple = cell.attr.kind == AttrKind::Numeric && cell.isCompound();
        if (isTuple && tuple(cell)) return;
        if (cell.isCompound()) {
            for (auto& child : cell.children) {
                if (child) values(*child);
            }
            // Behind the parts: a lock holds for these, too.
            if (hasFlags(cell)) statementStart(cell), file_.write(";\n");
            return;
        }
        leaf(cell);
    }

    void statementStart(const Cell& cell) {
        file_.write("\tsetAttr");
        flags(cell);
        file_.write(" " + quotedText(relativeName(cell)));
    }

    /// Whole tuples in one statement, unless a part has flags or a wire of its own. True when that did it.
    bool tuple(Cell& cell) {
        if (cell.feedingAncestor()) return !hasFlags(cell);
        bool differs = false;
        for (const auto& child : cell.children) {
            if (!child) continue;
            if (hasFlags(*child) || child->source) return false;
            differs = differs || hasValue(*child) || cell.isElement();
        }
        if (!differs && !hasFlags(cell)) return true;
        statementStart(cell);
        file_.write(" -type " + quotedText(cell.attr.typeName()));
        for (std::size_t i = 0; i < cell.attr.children.size(); ++i) {
            file_.put(' ');
            number(cell.child(static_cast<int>(i)));
        }
        file_.write(" ;\n");
        return true;
    }

    void number(const Cell& cell) {
        const double value = commands::toUi(scene_, cell.attr.unit, cell.number);
        if (cell.attr.kind == AttrKind::Numeric && cell.attr.numericType == MFnNumericData::kFloat) {
            file_.putNumber(static_cast<float>(value));
        } else {
            file_.putNumber(value);
        }
    }

    /// Whether a leaf holds something that the file must say.
    static bool hasValue(const Cell& cell) {
        if (!cell.isSet || cell.feedingAncestor()) return false;
        if (!cell.attr.isNumber()) return cell.data && canWriteData(*cell.data);
        const bool isRampEntry = cell.parent && cell.parent->attr.ramp != graph::RampKind::None;
        // The default of a guessed attribute is not known.
        return cell.number != cell.attr.defaultNumber || cell.isElement() || isRampEntry || cell.attr.guessed;
    }

    void leaf(Cell& cell) {
        const bool hasOwn = hasValue(cell);
        const bool isBool =
            cell.attr.kind == AttrKind::Numeric && cell.attr.numericType == MFnNumericData::kBoolean;
        if (!hasOwn && !hasFlags(cell)) return;
        statementStart(cell);
        if (hasOwn && isBool) {
            file_.write(cell.number != 0 ? " yes" : " no");
        } else if (hasOwn && cell.attr.isNumber()) {
            file_.put(' ');
            number(cell);
        } else if (hasOwn) {
            writeData(file_, *cell.data);
            file_.put(' ');
        }
        file_.write(";\n");
    }

    // --- packed multis and meshes
    // ------------------------------------------------------------------------------------

    template <class T>
    void elements(const std::string& name, const std::vector<T>& values, std::size_t stride,
                  const std::string& type = {}) {
        const std::size_t count = values.size() / stride;
        if (count == 0) return;
        file_.write("\tsetAttr -s " + std::to_string(count) + " " + quotedText(name) + ";\n");
        for (std::size_t first = 0; first < count; first += kElementsPerStatement) {
            const std::size_t last = std::min(first + kElementsPerStatement, count) - 1;
            std::string range = std::to_string(first);
            if (last > first) range += ':' + std::to_string(last);
            file_.write("\tsetAttr " + quotedText(name + "[" + range + "]") +
                        (type.empty() ? "" : " -type " + quotedText(type)));
            writeNumbers(file_, values.data() + first * stride, (last - first + 1) * stride, 4 * stride);
            file_.write(";\n");
        }
    }

    void packed(Cell& cell) {
        const std::string type = cell.attr.isCompound() ? cell.attr.typeName() : std::string();
        if (const auto* floats = dynamic_cast<PackedFloats*>(cell.data.get())) {
            elements(relativeName(cell), floats->values(), static_cast<std::size_t>(floats->stride), type);
        } else if (const auto* ints = dynamic_cast<PackedInts*>(cell.data.get())) {
            elements(relativeName(cell), ints->values(), static_cast<std::size_t>(ints->stride), type);
        }
    }

    void meshStorage(nodes::MeshNode& node) {
        const auto own = node.own();
        const auto* data = dynamic_cast<const MeshData*>(own.get());
        if (!data) return;
        const auto arrays = nodes::meshFileArrays(data->geometry());
        if (arrays.isEmpty()) return;
        for (const auto& set : arrays.uvSets) {
            const std::string name = ".uvst[" + std::to_string(set.index) + "]";
            file_.write("\tsetAttr " + quotedText(name + ".uvsn") + " -type \"string\" " +
                        quotedText(set.name) + ";\n");
            elements(name + ".uvsp", set.uvs, 2, "float2");
        }
        text(".cuvs", arrays.currentUvSet);
        for (const auto& set : arrays.colorSets) {
            const std::string name = ".clst[" + std::to_string(set.index) + "]";
            file_.write("\tsetAttr " + quotedText(name + ".clsn") + " -type \"string\" " +
                        quotedText(set.name) + ";\n");
            elements(name + ".clsp", set.colors, 4);
        }
        text(".ccls", arrays.currentColorSet);
        elements(".vt", arrays.points, 3);
        elements(".ed", arrays.edges, 3);
        elements(".n", arrays.normals, 3, "float3");
        faces(arrays);
    }

    void text(const char* name, const std::string& value) {
        if (!value.empty())
            file_.write("\tsetAttr " + quotedText(name) + " -type \"string\" " + quotedText(value) + ";\n");
    }

    void faces(const nodes::MeshFileArrays& arrays) {
        if (arrays.faceCount == 0) return;
        file_.write("\tsetAttr -s " + std::to_string(arrays.faceCount) + " \".fc\";\n");
        static constexpr const char* kNames[] = {"f", "h", "mu", "mc", "fc", "mf", "mh"};
        const auto& codes = arrays.faceCodes;
        std::size_t face = 0;
        for (std::size_t at = 0; at < codes.size();) {
            const int code = codes[at];
            if (code == PolyFacesData::Face && face++ % kElementsPerStatement == 0) {
                const std::size_t first = face - 1;
                const std::size_t last =
                    std::min(first + kElementsPerStatement, static_cast<std::size_t>(arrays.faceCount)) - 1;
                if (first > 0) file_.write(";\n");
                std::string range = std::to_string(first);
                if (last > first) range += ':' + std::to_string(last);
                file_.write("\tsetAttr " + quotedText(".fc[" + range + "]") + " -type \"polyFaces\"");
            }
            ++at;
            file_.write("\n\t\t");
            file_.write(kNames[code]);
            if (PolyFacesData::hasSet(code)) {
                file_.put(' ');
                file_.putNumber(codes[at++]);
            }
            const int count = codes[at++];
            file_.put(' ');
            file_.putNumber(count);
            for (int i = 0; i < count; ++i) {
                file_.put(' ');
                file_.putNumber(codes[at++]);
            }
        }
        file_.write(";\n");
    }

    // --- the session's own nodes, and wires
    // --------------------------------------------------------------------------

    void defaultNode(Node& node) {
        if (node.type().isDag || !isChosen(node)) return;
        bool differs = false;
        for (const auto& attribute : node.dynamicAttributes())
            differs = differs || !attribute->guessed;
        node.eachCell([&](Cell& cell) {
            if (!cell.attr.storable) return;
            differs = differs || hasFlags(cell) || (cell.isLeaf() && hasValue(cell));
        });
        if (!differs) return;
        file_.write("select -ne :" + node.name() + ";\n");
        attributes(node);
    }

    std::string plugName(const Cell& cell) const {
        const std::string name = cell.node.uniqueName();
        return (cell.node.isDefault ? ":" + name : name) + relativeName(cell);
    }

    void wires(Node& node) {
        node.eachCell([&](Cell& cell) {
            if (!cell.source) return;
            Node& from = cell.source->node;
            const bool bothOwn = from.isDefault && node.isDefault;
            const bool inside = (isChosen(from) || from.isDefault) && (isChosen(node) || node.isDefault);
            if (bothOwn || !inside) return;
            const bool next = cell.isElement() && !cell.attr.indexMatters && cell.attr.connectable;
            std::string to = plugName(cell);
            if (next) to.resize(to.rfind('['));
            file_.write("connectAttr " + quotedText(plugName(*cell.source)) + " " + quotedText(to) +
                        (next ? " -na" : "") + (cell.locked ? " -l on" : "") + ";\n");
        });
    }

    graph::Scene& scene_;
    AtomicFile& file_;
    std::set<Node*> chosen_;
    std::vector<Node*> order_;
};

} // namespace

Outcome writeAscii(graph::Scene& scene, const std::vector<Node*>& nodes, const std::filesystem::path& path) {
    AtomicFile file(path);
    Writer(scene, nodes, file).write(path.filename().string());
    return file.commit();
}

} // namespace vesk::scene
