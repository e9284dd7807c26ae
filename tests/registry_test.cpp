// Sweeps over every type of the plug-in that is there.

#include "tests/registry_types.h"
#include "tests/session_fixture.h"

#include "host/session/attribute_text.h"

#include <map>
#include <sstream>

namespace vesk::tests {

namespace {

std::string join(const std::vector<std::string>& columns) {
    std::string line;
    for (const auto& column : columns)
        line += column + " | ";
    while (line.ends_with(" | "))
        line.resize(line.size() - 3);
    return line;
}

/// The rows below "## Attributes" of a help card, without their quotation marks of code.
Texts cardRows(const std::string& card) {
    const auto at = card.find("\n## Attributes\n");
    if (at == std::string::npos) return {};
    std::istringstream lines(card.substr(at + 15));
    Texts rows;
    for (std::string line; std::getline(lines, line) && !line.starts_with("## ");) {
        if (!line.starts_with("| `")) continue;
        std::erase(line, '`');
        std::vector<std::string> columns;
        std::istringstream cells(line.substr(1));
        for (std::string cell; std::getline(cells, cell, '|');) {
            const auto first = cell.find_first_not_of(' ');
            columns.push_back(
                first == std::string::npos ? "" : cell.substr(first, cell.find_last_not_of(' ') - first + 1));
        }
        rows.push_back(join(columns));
    }
    return rows;
}

class Registry : public PluginTest {
  protected:
    std::vector<const graph::NodeType*> types() const { return registeredTypes(*session); }
};

} // namespace

TEST_F(Registry, HelpCardsTellTheAttributesAsTheyAre) {
    for (const auto* type : types()) {
        const std::string name = type->name();
        const auto card = contentOf(std::string(VESK_SOURCE_DIR) + "/nodes/" + name + "/" + name + ".md");
        Texts actual;
        for (const auto* attribute : ownAttributes(*type)) {
            if (isPartOfRamp(*attribute)) continue;
            const AttributeText text = attributeText(*attribute);
            actual.push_back(join({attribute->longName, attribute->shortName, text.type, text.defaultValue,
                                   text.limits, text.flags}));
        }
        // As one text: a difference shows as a difference of lines.
        const auto text = [](const Texts& lines) {
            std::string all;
            for (const auto& line : lines)
                all += line + "\n";
            return all;
        };
        EXPECT_EQ(text(cardRows(card)), text(actual)) << name;
    }
}

TEST_F(Registry, EveryTypeBuildsAndItsDefaultsSurviveSavingAndOpening) {
    for (const auto* type : types()) {
        if (type->name().ends_with("Manip")) continue; // made by the host alone
        run("createNode " + type->name() + " -n the_" + type->name());
    }
    const auto snapshot = [&] {
        std::map<std::string, std::string> values;
        for (const auto* type : types()) {
            for (const auto* attribute : ownAttributes(*type)) {
                if (attribute->parent || attribute->array || !attribute->isNumber()) continue;
                const std::string plug = "the_" + type->name() + "." + attribute->longName;
                values[plug] = mel("getAttr " + plug);
            }
        }
        return values;
    };
    const auto before = snapshot();
    const std::string file = (folder / "all.ma").string();
    run("file -rename \"" + file + "\"; file -save -type \"mayaAscii\"; file -f -new; file -o \"" + file +
        "\"");
    EXPECT_EQ(snapshot(), before);
}

} // namespace vesk::tests
