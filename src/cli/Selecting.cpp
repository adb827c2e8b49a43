#include "cli/Selecting.h"

#include "cli/ObjectPaths.h"
#include "cli/Output.h"
#include "content/ObjectTree.h"
#include "content/VisibleName.h"
#include "datasets/ObjectInfoData.h"
#include "datasets/TrimmingNullCharacters.h"

#include <nlohmann/json.hpp>

namespace nivor {

ObjectSelection selectForCommand(CliEnvironment& environment, const ContentListing& listing,
                                 const QStringList& words)
{
    const ObjectTree tree(listing.objects);
    if (words.isEmpty()) {
        ObjectSelection everything;
        for (const ObjectTree::Node& node : tree.nodes()) {
            if (!node.object->isAssociation())
                everything.files.push_back(node.object);
        }
        return everything;
    }
    ObjectSelection selection = selectObjects(tree, words);
    for (const QString& word : selection.unmatched)
        complain(environment, visibleName(word).toStdString() + ": nothing on the camera matches");
    for (const QString& word : selection.emptyHanded)
        complain(environment, visibleName(word).toStdString() + ": there is no file in it");
    return selection;
}

nlohmann::json unmatchedWords(const ObjectSelection& selection)
{
    nlohmann::json array = nlohmann::json::array();
    for (const QString& word : selection.unmatched + selection.emptyHanded)
        array.push_back(word.toStdString());
    return array;
}

nlohmann::json objectReference(const ObjectInfoData& object, const ObjectPaths& paths)
{
    return {{"handle", object.myHandle().toUInt()},
            {"name", NVX_stringByTrimmingNullCharacters(object.fileName()).toStdString()},
            {"path", paths.of(object).toStdString()}};
}

}  // namespace nivor
