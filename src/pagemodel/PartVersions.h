#pragma once

#include "base/Integers.h"

namespace rvf {

/// The versions of a draw part and what each introduced. Fields are gated by the signed value, so a
/// negative version is older than all of them; sections, the end mark and the limit depend on the
/// absolute value.
namespace part_version {

constexpr i32 kImageFlagB = 101;
constexpr i32 kImageFlagsCD = 102;
constexpr i32 kImageKindValue = 103;  // older files number image kinds differently
constexpr i32 kReferenceB = 104;      // refB of a static reference
constexpr i32 kByteType = 105;        // the type is one byte
constexpr i32 kCompactFields = 106;   // counts, flags and codes lose their upper bytes
constexpr i32 kTint = 108;            // tints; kind words of image colours
constexpr i32 kOverprint = 109;
constexpr i32 kResource = 110;          // older resources store nothing
constexpr i32 kWideRunPositions = 111;  // run positions have 32 bits again
constexpr i32 kShapeCodeC = 113;
constexpr i32 kPolyExtra = 114;
constexpr i32 kMarkerLink = 115;  // compact STARTEND with its link
constexpr i32 kLengthD = 116;
constexpr i32 kLayers = 117;  // compact static reference with its layers
constexpr i32 kTextFlags = 118;
constexpr i32 kSecondKeyText = 119;
constexpr i32 kClip = 120;  // clip of an imported page
constexpr i32 kDataMode = 122;
constexpr i32 kImageValueC = 123;
constexpr i32 kImageByteFlags = 124;
constexpr i32 kImageColourC = 126;
constexpr i32 kImageValueE = 128;
constexpr i32 kWholeScale = 129;  // older heights and scales are stored in hundreds
constexpr i32 kLanguage = 131;
constexpr i32 kPlainTail = 132;       // link flag without sections, no end mark
constexpr i32 kNarrowOldLinks = 133;  // old link records have one byte per character
constexpr i32 kRunClass = 134;        // stored in 32 bits, only in this version
constexpr i32 kByteRunClass = 135;
constexpr i32 kNameValues = 136;
constexpr i32 kHyperlinkFlag = 137;
constexpr i32 kTaggedLinks = 138;  // link records have their own tag
constexpr i32 kByteHyperlinkFlag = 139;
constexpr i32 kLinkCode = 141;
constexpr i32 kImageValueD = 142;
constexpr i32 kSignature = 143;
constexpr i32 kFieldId = 144;
constexpr i32 kMarkerPairs = 145;
constexpr i32 kImportFlag = 146;  // and byteE of an image
constexpr i32 kImageFlag = 147;
constexpr i32 kActualText = 148;
constexpr i32 kExtraId = 149;
constexpr i32 kImageColourE = 150;
constexpr i32 kShapeCodeD = 150;  // stored in 32 bits in this version and the next
constexpr i32 kRunExtra = 151;
constexpr i32 kGradient = 152;         // and a one-byte shapeCodeD
constexpr i32 kShortPointCount = 153;  // and polyExtra in 16 bits
constexpr i32 kMarkerFlag = 154;
constexpr i32 kGradientTints = 155;
constexpr i32 kLinkValues = 156;
constexpr i32 kResourceExtra = 157;  // and scales in 16 bits

/// Sections are numbered from the base tag; nothing newer than the highest is read.
constexpr i32 kBaseTag = 120;
constexpr i32 kHighest = 157;

}  // namespace part_version

/// The version of a draw list.
namespace list_version {
constexpr i32 kBytes = 101;  // byteA and byteB
constexpr i32 kContentTally = 102;
constexpr i32 kSkippedByte = 103;
constexpr i32 kListFlags = 104;
constexpr i32 kValues = 105;  // valueA and valueB
constexpr i32 kListExtra = 106;
constexpr i32 kBaseTag = 106;
constexpr i32 kHighest = 107;
}  // namespace list_version

/// The version of a static object.
namespace static_version {
constexpr i32 kValueF = 101;
constexpr i32 kValueE = 102;
constexpr i32 kName = 103;
constexpr i32 kIndexA = 104;
constexpr i32 kSkippedWords = 105;  // one for each list
constexpr i32 kIndexB = 106;
constexpr i32 kOneMoreWord = 108;  // from here to kLastMoreWord
constexpr i32 kLastMoreWord = 110;
constexpr i32 kBaseTag = 106;
constexpr i32 kHighest = 111;
}  // namespace static_version

}  // namespace rvf
