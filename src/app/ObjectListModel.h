/// The flat list of the camera's objects as a tree with three columns.
#pragma once

#include "content/ContentListing.h"

#include <QAbstractItemModel>
#include <QHash>
#include <QLocale>

#include <cstdint>
#include <memory>
#include <vector>

namespace nivor {

/// The contents of a folder are the objects that name its handle as their parent, those at the top
/// name "0"; they stand in the order of the list. Where an object stands is worked out once at each
/// reload, in a time that grows with the number of objects alone. An object that names a parent
/// nobody has is not shown, and neither is what lies deeper than `deepestLevel`.
class ObjectListModel : public QAbstractItemModel {
public:
    enum Column : std::uint8_t { NameColumn, ModifiedColumn, SizeColumn };
    static constexpr int columnTotal = 3;
    static constexpr int deepestLevel = 64;

    explicit ObjectListModel(QObject* parent = nullptr);

    /// Shows these objects from now on; null is the same as none. What changes in the list later
    /// is not noticed.
    void reload(const std::shared_ptr<const ObjectList>& objects);

    /// The object of a row, whatever the column; null for an invalid index.
    [[nodiscard]] std::shared_ptr<ObjectInfoData> object(const QModelIndex& index) const;

    /// Its row, in the first column; invalid when the object is not shown.
    [[nodiscard]] QModelIndex indexOf(const ObjectInfoData* object) const;

    /// Whether it is a folder, which its row's height depends on.
    [[nodiscard]] bool isFolder(const QModelIndex& index) const;

    /// Whether it names no folder as its parent.
    [[nodiscard]] bool isTopLevel(const QModelIndex& index) const;

    /// Rows of all levels.
    [[nodiscard]] int size() const { return static_cast<int>(nodes_.size()) - 1; }

    QModelIndex index(int row, int column, const QModelIndex& parent = {}) const override;
    QModelIndex parent(const QModelIndex& child) const override;
    QModelIndex sibling(int row, int column, const QModelIndex& index) const override;
    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    bool hasChildren(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;

private:
    using NodeNumber = std::uint32_t;

    /// Nodes lie level by level, the contents of each folder side by side. Number 0 is the root.
    struct Node {
        std::shared_ptr<ObjectInfoData> object;
        NodeNumber parent = 0;
        NodeNumber firstChild = 0;
        NodeNumber childCount = 0;
        std::uint16_t level = 0;
        bool isFolder = false;
    };

    void build(const ObjectList& objects);
    [[nodiscard]] NodeNumber numberOf(const QModelIndex& index) const;
    [[nodiscard]] NodeNumber numberOf(const ObjectInfoData* object) const;
    [[nodiscard]] QVariant text(const QModelIndex& index) const;

    std::vector<Node> nodes_;
    mutable QHash<const ObjectInfoData*, NodeNumber> numbers_;  ///< made when many are looked for
    mutable int searches_ = 0;  ///< without them, since the last reload
    QLocale locale_;
};

}  // namespace nivor
