/// The texts that users read, by key.
#pragma once

#include <QString>

namespace nivor {

/// The keys of the tables in `resources/translations`.
namespace TextKey {

inline constexpr const char* aboutMessage = "aboutMessage";
inline constexpr const char* aboutTitle = "aboutTitle";
inline constexpr const char* actionAbout = "actionAbout";
inline constexpr const char* actionCopyToFolder = "actionCopyToFolder";
inline constexpr const char* actionDelete = "actionDelete";
inline constexpr const char* actionLargerThumbnails = "actionLargerThumbnails";
inline constexpr const char* actionPlugIn = "actionPlugIn";
inline constexpr const char* actionQuit = "actionQuit";
inline constexpr const char* actionSelectAll = "actionSelectAll";
inline constexpr const char* actionShowLogFolder = "actionShowLogFolder";
inline constexpr const char* actionSmallerThumbnails = "actionSmallerThumbnails";
inline constexpr const char* actionSortAscending = "actionSortAscending";
inline constexpr const char* actionSortDescending = "actionSortDescending";
inline constexpr const char* actionUnplug = "actionUnplug";
inline constexpr const char* cancelButtonMessage = "cancelButtonMessage";
inline constexpr const char* chooseFolderTitle = "chooseFolderTitle";
inline constexpr const char* columnModified = "columnModified";
inline constexpr const char* columnName = "columnName";
inline constexpr const char* columnSize = "columnSize";
inline constexpr const char* connectionRequestInformative = "connectionRequestInformative";
inline constexpr const char* connectionRequestMessage = "connectionRequestMessage";
inline constexpr const char* copyButtonTitle = "copyButtonTitle";
inline constexpr const char* copyButtonToolTip = "copyButtonToolTip";
inline constexpr const char* copyPanelTitle = "copyPanelTitle";
inline constexpr const char* copyProgressName = "copyProgressName";
inline constexpr const char* copyingMessage = "copyingMessage";
inline constexpr const char* deleteAlertMessage = "deleteAlertMessage";
inline constexpr const char* deleteButtonMessage = "deleteButtonMessage";
inline constexpr const char* deleteConfirmationMessage = "deleteConfirmationMessage";
inline constexpr const char* dragUnavailableMessage = "dragUnavailableMessage";
inline constexpr const char* dropRefusedMessage = "dropRefusedMessage";
inline constexpr const char* errorMessage = "errorMessage";
inline constexpr const char* hintEmptyInformative = "hintEmptyInformative";
inline constexpr const char* hintEmptyMessage = "hintEmptyMessage";
inline constexpr const char* hintReadingMessage = "hintReadingMessage";
inline constexpr const char* hintUnreadableInformative = "hintUnreadableInformative";
inline constexpr const char* hintUnreadableMessage = "hintUnreadableMessage";
inline constexpr const char* listName = "listName";
inline constexpr const char* menuEdit = "menuEdit";
inline constexpr const char* menuFile = "menuFile";
inline constexpr const char* menuHelp = "menuHelp";
inline constexpr const char* menuSimulation = "menuSimulation";
inline constexpr const char* menuSortBy = "menuSortBy";
inline constexpr const char* menuView = "menuView";
inline constexpr const char* okButtonMessage = "okButtonMessage";
inline constexpr const char* selectAllButtonTitle = "selectAllButtonTitle";
inline constexpr const char* selectAllButtonToolTip = "selectAllButtonToolTip";
inline constexpr const char* statusCopied = "statusCopied";
inline constexpr const char* statusDeleted = "statusDeleted";
inline constexpr const char* statusDeleting = "statusDeleting";
inline constexpr const char* statusIncomplete = "statusIncomplete";
inline constexpr const char* statusItems = "statusItems";
inline constexpr const char* statusNoCamera = "statusNoCamera";
inline constexpr const char* statusReading = "statusReading";
inline constexpr const char* statusReadingCount = "statusReadingCount";
inline constexpr const char* statusSelected = "statusSelected";
inline constexpr const char* statusSeparator = "statusSeparator";
inline constexpr const char* statusStopped = "statusStopped";
inline constexpr const char* stopButtonDescription = "stopButtonDescription";
inline constexpr const char* stopButtonMessage = "stopButtonMessage";
inline constexpr const char* stoppingMessage = "stoppingMessage";
inline constexpr const char* thumbnailSliderName = "thumbnailSliderName";
inline constexpr const char* timeLeftMessage = "timeLeftMessage";
inline constexpr const char* transferCapacityMessage = "transferCapacityMessage";
inline constexpr const char* trashButtonTitle = "trashButtonTitle";
inline constexpr const char* trashButtonToolTip = "trashButtonToolTip";

}  // namespace TextKey

/// The text of a key in the user's language; the key itself when no table has it.
QString localizedText(const char* key);

/// The same with the arguments in the places of "%1" and "%2". A text without such places, a
/// missing one included, stays as it is.
QString localizedText(const char* key, const QString& first);
QString localizedText(const char* key, const QString& first, const QString& second);

/// The text for a number of things, which takes the place of "%n".
QString localizedCount(const char* key, int count);

/// Loads the tables for the whole program: that of the user's language, and the English one below
/// it. Once, while there is an application object.
void installTexts();

/// The same in one language, such as "de" or "zh_CN"; English when there is no table for it.
void installTexts(const QString& language);

}  // namespace nivor
