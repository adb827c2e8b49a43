#include "cli/ListCommand.h"

#include "cli/CameraContents.h"
#include "cli/CameraSession.h"
#include "cli/Output.h"
#include "content/ByteCount.h"
#include "content/ObjectTree.h"
#include "content/VisibleName.h"
#include "datasets/ObjectInfoData.h"

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include <ostream>

namespace nivor {
namespace {

nlohmann::json objectJson(const ObjectTree& tree, std::size_t index)
{
    const ObjectTree::Node& node = tree.nodes()[index];
    const ObjectInfoData& object = *node.object;
    const QDateTime modified = object.modifiedDate();
    // The camera's own clock, which knows no time zone.
    const QString isoFormat = QStringLiteral("yyyy-MM-dd'T'HH:mm:ss");
    return {{"handle", object.myHandle().toUInt()},
            {"parent", object.parentObject().toUInt()},
            {"name", node.name.toStdString()},
            {"path", tree.path(index).toStdString()},
            {"folder", object.isAssociation()},
            {"format", object.objectFormat()},
            {"size", object.objectCompressedSize()},
            {"modified",
             modified.isValid() ? nlohmann::json(modified.toString(isoFormat).toStdString())
                                : nlohmann::json()},
            {"thumbnailSize", object.thumbCompressedSize()}};
}

void printJsonList(CliEnvironment& environment, const ObjectTree& tree)
{
    nlohmann::json array = nlohmann::json::array();
    for (std::size_t i = 0; i < tree.nodes().size(); ++i)
        array.push_back(objectJson(tree, i));
    printJson(environment, array);
}

std::string rowText(const ObjectTree::Node& node)
{
    constexpr std::size_t indent = 2;
    const ObjectInfoData& object = *node.object;
    const QDateTime modified = object.modifiedDate();
    const bool isFolder = object.isAssociation();
    return fmt::format(
        "{:>10}  {:>9}  {:16}  {}{}{}\n", object.myHandle().toStdString(),
        isFolder ? std::string("folder") : byteCountText(object.objectCompressedSize()),
        modified.isValid() ? modified.toString(QStringLiteral("yyyy-MM-dd HH:mm")).toStdString()
                           : std::string(),
        std::string(indent * node.depth, ' '), visibleName(node.name).toStdString(),
        isFolder ? "/" : "");
}

void printTree(CliEnvironment& environment, const ObjectTree& tree)
{
    std::uint64_t files = 0;
    std::uint64_t bytes = 0;
    if (!tree.nodes().empty())
        environment.out << "    Handle       Size  Modified          Name\n";
    for (const ObjectTree::Node& node : tree.nodes()) {
        environment.out << rowText(node);
        if (!node.object->isAssociation()) {
            ++files;
            bytes += node.object->objectCompressedSize();
        }
    }
    environment.out << fmt::format("{}, {}, {}\n", countText(files, "file"),
                                   countText(tree.nodes().size() - files, "folder"),
                                   byteCountText(bytes));
}

}  // namespace

ExitCode runListCommand(CliEnvironment& environment, const CliOptions& options)
{
    CameraSession session(environment, options);
    const ExitCode opened = session.open();
    if (opened != ExitCode::Done)
        return opened;
    const CameraContents contents = readCameraContents(environment, session.engine());
    const ObjectTree tree(contents.listing.objects);
    if (options.isJson)
        printJsonList(environment, tree);
    else
        printTree(environment, tree);
    return contents.exitCode;
}

}  // namespace nivor
