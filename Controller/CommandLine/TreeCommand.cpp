#include <algorithm>
#include <iterator>
#include <ostream>

#include "Common/include/UtfConversion.h"
#include "Controller/CommandLine/Commands.h"
#include "Controller/CommandLine/Elements.h"
#include "Controller/CommandLine/ElementTree.h"
#include "Controller/CommandLine/Identifier.h"

namespace Zorvex::Controller {

namespace {

struct Column {
    std::wstring name;
    std::vector<CComVariant> values;  // by node
};

// A slip in a name would show nothing at all.
void CheckNames(const std::vector<std::wstring>& names) {
    for (const std::wstring& name : names) {
        if (std::find(std::begin(kAttributeNames), std::end(kAttributeNames), name) != std::end(kAttributeNames)) continue;
        std::string known;
        for (const wchar_t* one : kAttributeNames) known += (known.empty() ? "" : ", ") + NarrowText(one);
        throw CommandFailure(ExitCode::WrongArguments, "--attrs: there is no attribute '" + NarrowText(name) + "'; there are " + known);
    }
}

// Depth first, without recursion: trees are as deep as the target makes them.
void WriteTree(JsonWriter& json, const ElementTree& tree, const std::vector<ElementView>& views, const std::vector<Column>& columns) {
    std::size_t open = 0;
    for (const std::size_t place : DepthFirst(tree)) {
        const TreeNode& node = tree.nodes[place];
        for (; open > node.depth; --open) json.EndArray().EndObject();
        json.BeginObject();
        WriteView(json, views[place]);
        for (const Column& column : columns) {
            // These are there already.
            if (column.name == L"name" || column.name == L"role") continue;
            json.Key(NarrowText(column.name));
            WriteVariant(json, column.values[place]);
        }
        json.Key("children").BeginArray();
        ++open;
    }
    for (; open > 0; --open) json.EndArray().EndObject();
    json.Finish();
}

}  // namespace

ExitCode RunTree(Session& session, const TreeCommand& command, Output& output) {
    CheckNames(command.attributes);
    session.Open();
    const ElementTree tree = ReadTree(session, command.depth, command.maximum);
    std::vector<AAObjectIdentifier> elements;
    for (const TreeNode& node : tree.nodes) elements.push_back(node.identifier);
    const std::vector<ElementView> views = ReadViews(session, elements);
    std::vector<Column> columns;
    for (const std::wstring& name : command.attributes) columns.push_back({name, ReadAttribute(session, elements, name)});

    if (output.json) {
        JsonWriter json(output.out);
        WriteTree(json, tree, views, columns);
    } else {
        for (const std::size_t place : DepthFirst(tree)) {
            output.out << std::string(2 * tree.nodes[place].depth, ' ') << ViewText(views[place]);
            for (const Column& column : columns)
                if (column.values[place].vt != VT_EMPTY)
                    output.out << "  " << NarrowText(column.name) << '=' << VariantText(column.values[place]);
            if (command.identifiers) output.out << "  " << IdentifierText(tree.nodes[place].identifier);
            output.out << '\n';
        }
    }
    if (tree.cut) output.err << "the tree is cut at " << tree.nodes.size() << " elements; --max allows more\n";
    return ExitCode::Done;
}

}  // namespace Zorvex::Controller
