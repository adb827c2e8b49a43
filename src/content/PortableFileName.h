/// Makes a file name fit for the folders that refuse what other systems forbid.
#pragma once

#include <QString>

namespace nivor {

/// `localName`, made by `localFileName`, as FAT, exFAT, NTFS and SMB folders take it: each of
/// \ : * ? " < > | becomes '_', so do blanks and dots at the end, and a device's name such as "CON"
/// or "com1.txt" gets a '_' in front. Never longer than the longest name.
QString portableFileName(const QString& localName);

}  // namespace nivor
