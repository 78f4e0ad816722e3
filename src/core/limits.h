// The limits of a database.
#pragma once

#include <cstddef>
#include <cstdint>

namespace rowvane {

inline constexpr size_t kMaxTextCharacters = 8169;       // a Text value, in characters
inline constexpr int kMaxRecordLines = 20;               // that a grid shows of a record
inline constexpr size_t kEntryWarningCharacters = 8164;  // text being entered: where the editor warns
inline constexpr size_t kMaxBufferBytes = 8165;          // criteria, formulas and messages, in bytes
inline constexpr uint32_t kDefaultMaxRecords = 12'582'912;
inline constexpr size_t kMaxFields = 65'535;
inline constexpr size_t kMaxImportColumns = 16'384;
inline constexpr size_t kMaxRecordBytes = 65'536;  // the in-record fields of one record
inline constexpr size_t kMaxFolderDepth = 100;     // folders one within the other
inline constexpr size_t kMaxContainerObjects = 255;
inline constexpr size_t kMaxRecordFlagTypes = 10;
inline constexpr size_t kMaxPivotTables = 100;
inline constexpr size_t kMaxDropDownLists = 65'535;
inline constexpr size_t kMaxArchiveMembers = 65'535;            // tables, long texts and files together
inline constexpr uint64_t kMaxBinaryBytes = uint64_t{2} << 30;  // long texts and files together

}  // namespace rowvane
