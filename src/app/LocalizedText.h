/// The texts that users read, by key.
#pragma once

#include <QString>

namespace nivor {

/// The keys of the tables in `resources/translations`.
namespace TextKey {

inline constexpr const char* cancelButtonMessage = "cancelButtonMessage";
inline constexpr const char* connectionRequestInformative = "connectionRequestInformative";
inline constexpr const char* connectionRequestMessage = "connectionRequestMessage";
inline constexpr const char* copyPanelTitle = "copyPanelTitle";
inline constexpr const char* copyProgressName = "copyProgressName";
inline constexpr const char* copyingMessage = "copyingMessage";
inline constexpr const char* deleteAlertMessage = "deleteAlertMessage";
inline constexpr const char* deleteButtonMessage = "deleteButtonMessage";
inline constexpr const char* deleteConfirmationMessage = "deleteConfirmationMessage";
inline constexpr const char* errorMessage = "errorMessage";
inline constexpr const char* okButtonMessage = "okButtonMessage";
inline constexpr const char* stopButtonDescription = "stopButtonDescription";
inline constexpr const char* stopButtonMessage = "stopButtonMessage";
inline constexpr const char* stoppingMessage = "stoppingMessage";
inline constexpr const char* timeLeftMessage = "timeLeftMessage";
inline constexpr const char* transferCapacityMessage = "transferCapacityMessage";

}  // namespace TextKey

/// The text of a key in the user's language; the key itself when no table has it.
QString localizedText(const char* key);

/// The same with the arguments in the places of "%1" and "%2". A text without such places, a
/// missing one included, stays as it is.
QString localizedText(const char* key, const QString& first);
QString localizedText(const char* key, const QString& first, const QString& second);

/// Loads the English table for the whole program. Once, while there is an application object.
void installTexts();

}  // namespace nivor
