#include "app/ObjectListModel.h"

#include "app/LocalizedText.h"
#include "content/VisibleName.h"
#include "datasets/ObjectInfoData.h"
#include "datasets/TrimmingNullCharacters.h"

#include <algorithm>
#include <limits>
#include <utility>

namespace nivor {
namespace {

const QString& topKey()
{
    static const QString key = QStringLiteral("0");
    return key;
}

const char* columnTitleKey(int column)
{
    switch (column) {
    case ObjectListModel::NameColumn:
        return TextKey::columnName;
    case ObjectListModel::ModifiedColumn:
        return TextKey::columnModified;
    case ObjectListModel::SizeColumn:
        return TextKey::columnSize;
    default:
        return "";
    }
}

}  // namespace

ObjectListModel::ObjectListModel(QObject* parent)
    : QAbstractItemModel(parent)
    , nodes_(1)
{
}

void ObjectListModel::reload(const std::shared_ptr<const ObjectList>& objects)
{
    beginResetModel();
    nodes_.assign(1, Node());
    numbers_.clear();
    searches_ = 0;
    if (objects)
        build(*objects);
    endResetModel();
}

void ObjectListModel::build(const ObjectList& objects)
{
    QHash<QString, std::vector<std::uint32_t>> contents;
    for (std::uint32_t i = 0; i < objects.size(); ++i)
        contents[objects[i]->parentObject()].push_back(i);

    nodes_.reserve(objects.size() + 1);
    for (NodeNumber number = 0; number < nodes_.size() && !contents.isEmpty(); ++number) {
        if (nodes_[number].level >= deepestLevel)
            continue;
        // Taken out: handles are shown once, however often a camera names them.
        const std::vector<std::uint32_t> children =
            contents.take(number == 0 ? topKey() : nodes_[number].object->myHandle());
        nodes_[number].firstChild = static_cast<NodeNumber>(nodes_.size());
        nodes_[number].childCount = static_cast<NodeNumber>(children.size());
        for (const std::uint32_t child : children) {
            nodes_.push_back({.object = objects[child],
                              .parent = number,
                              .level = static_cast<std::uint16_t>(nodes_[number].level + 1),
                              .isFolder = objects[child]->isAssociation()});
        }
    }
}

std::shared_ptr<ObjectInfoData> ObjectListModel::object(const QModelIndex& index) const
{
    return nodes_[numberOf(index)].object;
}

QModelIndex ObjectListModel::indexOf(const ObjectInfoData* object) const
{
    const NodeNumber number = object == nullptr ? 0 : numberOf(object);
    if (number == 0)
        return {};
    const NodeNumber first = nodes_[nodes_[number].parent].firstChild;
    return createIndex(static_cast<int>(number - first), NameColumn, quintptr{number});
}

/// 0 when it is not shown.
ObjectListModel::NodeNumber ObjectListModel::numberOf(const ObjectInfoData* object) const
{
    // A reload that keeps its place looks for two or three: to search is quicker by far then.
    constexpr int mostSearches = 4;
    if (numbers_.isEmpty() && searches_++ < mostSearches) {
        const auto found =
            std::find_if(nodes_.begin() + 1, nodes_.end(),
                         [object](const Node& node) { return node.object.get() == object; });
        return found == nodes_.end() ? 0 : static_cast<NodeNumber>(found - nodes_.begin());
    }
    if (numbers_.isEmpty()) {
        numbers_.reserve(size());
        for (NodeNumber number = 1; number < nodes_.size(); ++number)
            numbers_.insert(nodes_[number].object.get(), number);
    }
    return numbers_.value(object, 0);
}

bool ObjectListModel::isFolder(const QModelIndex& index) const
{
    return nodes_[numberOf(index)].isFolder;
}

bool ObjectListModel::isTopLevel(const QModelIndex& index) const
{
    return nodes_[numberOf(index)].level == 1;
}

ObjectListModel::NodeNumber ObjectListModel::numberOf(const QModelIndex& index) const
{
    return index.isValid() ? static_cast<NodeNumber>(index.internalId()) : 0;
}

QModelIndex ObjectListModel::index(int row, int column, const QModelIndex& parent) const
{
    if (!hasIndex(row, column, parent))
        return {};
    const NodeNumber first = nodes_[numberOf(parent)].firstChild;
    return createIndex(row, column, quintptr{first + static_cast<NodeNumber>(row)});
}

QModelIndex ObjectListModel::parent(const QModelIndex& child) const
{
    const NodeNumber number = nodes_[numberOf(child)].parent;
    if (number == 0)
        return {};
    const NodeNumber first = nodes_[nodes_[number].parent].firstChild;
    return createIndex(static_cast<int>(number - first), NameColumn, quintptr{number});
}

/// A view asks for the other cells of a row more often than for anything else.
QModelIndex ObjectListModel::sibling(int row, int column, const QModelIndex& index) const
{
    if (row != index.row() || !index.isValid())
        return QAbstractItemModel::sibling(row, column, index);
    return column >= 0 && column < columnTotal ? createIndex(row, column, index.internalId())
                                               : QModelIndex();
}

int ObjectListModel::rowCount(const QModelIndex& parent) const
{
    if (parent.column() > NameColumn)
        return 0;
    return static_cast<int>(nodes_[numberOf(parent)].childCount);
}

int ObjectListModel::columnCount(const QModelIndex& parent) const
{
    return parent.column() > NameColumn ? 0 : columnTotal;
}

bool ObjectListModel::hasChildren(const QModelIndex& parent) const
{
    return rowCount(parent) > 0;
}

QVariant ObjectListModel::data(const QModelIndex& index, int role) const
{
    if (!index.isValid())
        return {};
    switch (role) {
    case Qt::DisplayRole:
    case Qt::AccessibleTextRole:
        return text(index);
    case Qt::ToolTipRole:
        return index.column() == NameColumn ? text(index) : QVariant();
    case Qt::TextAlignmentRole:
        return static_cast<int>((index.column() == SizeColumn ? Qt::AlignRight : Qt::AlignLeft)
                                | Qt::AlignVCenter);
    default:
        return {};
    }
}

QVariant ObjectListModel::text(const QModelIndex& index) const
{
    const ObjectInfoData& object = *nodes_[numberOf(index)].object;
    if (index.column() == NameColumn)
        return visibleName(NVX_stringByTrimmingNullCharacters(object.fileName()));
    // What lies at the top shows a name only.
    if (isTopLevel(index))
        return {};
    if (index.column() == ModifiedColumn) {
        const QDateTime date = object.modifiedDate();
        return date.isValid() ? locale_.toString(date, QLocale::ShortFormat) : QVariant();
    }
    const std::uint64_t size = object.objectCompressedSize();
    if (size == 0)
        return {};
    const auto shown =
        static_cast<qint64>(std::min<std::uint64_t>(size, std::numeric_limits<qint64>::max()));
    return locale_.formattedDataSize(shown, 1, QLocale::DataSizeSIFormat);
}

QVariant ObjectListModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || section < 0 || section >= columnTotal)
        return {};
    if (role == Qt::DisplayRole)
        return localizedText(columnTitleKey(section));
    if (role == Qt::TextAlignmentRole)
        return static_cast<int>((section == SizeColumn ? Qt::AlignRight : Qt::AlignLeft)
                                | Qt::AlignVCenter);
    return {};
}

Qt::ItemFlags ObjectListModel::flags(const QModelIndex& index) const
{
    if (!index.isValid())
        return Qt::NoItemFlags;
    Qt::ItemFlags flags = Qt::ItemIsEnabled | Qt::ItemIsSelectable;
    // A view then need not ask for the contents of every file when it expands all.
    if (nodes_[numberOf(index)].childCount == 0)
        flags |= Qt::ItemNeverHasChildren;
    return flags;
}

}  // namespace nivor
