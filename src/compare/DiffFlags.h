#pragma once

#include "base/Integers.h"

namespace rvf {

/// A set of difference bits: the result for a page, a customer or the files, and the status of the
/// run. 0 means identical.
using DiffFlags = u32;

// The values are frozen: they appear in difference files and in exit statuses that scripts test.
namespace diff {
constexpr DiffFlags kDrawOrder = 1;         // equal parts at different places in their lists
constexpr DiffFlags kReserved2 = 2;         // never set
constexpr DiffFlags kReserved4 = 4;         // never set
constexpr DiffFlags kReserved8 = 8;         // never set
constexpr DiffFlags kReserved16 = 16;       // never set
constexpr DiffFlags kPosition = 32;         // positions out of tolerance
constexpr DiffFlags kLineWidth = 64;        // line widths out of tolerance
constexpr DiffFlags kContent = 128;         // any difference in content; accompanies the finer bits
constexpr DiffFlags kColor = 256;           // colours
constexpr DiffFlags kRotation = 512;        // angles of rotation
constexpr DiffFlags kBorderLines = 1024;    // border lines, that is, outlines of objects
constexpr DiffFlags kText = 2048;           // texts
constexpr DiffFlags kImages = 4096;         // images
constexpr DiffFlags kFonts = 8192;          // fonts
constexpr DiffFlags kLines = 16384;         // lines
constexpr DiffFlags kShapes = 32768;        // shapes
constexpr DiffFlags kReserved19 = 65536;    // never set
constexpr DiffFlags kReserved20 = 131072;   // never set
constexpr DiffFlags kReserved21 = 262144;   // never set
constexpr DiffFlags kPageCount = 524288;    // numbers of pages of a customer
constexpr DiffFlags kCustomers = 1048576;   // numbers of customers, or ids at the same index
constexpr DiffFlags kResolution = 2097152;  // resolutions of the files; always alone
}  // namespace diff

}  // namespace rvf
