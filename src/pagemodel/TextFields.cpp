#include "pagemodel/TextFields.h"

#include "pagemodel/FieldVisitor.h"
#include "pagemodel/SharedFields.h"
#include "pagemodel/TextParts.h"

namespace rvf {

namespace {

void visitRun(const TextRun& run, FieldVisitor& visitor) {
  visitor.number("x", run.x);
  visitor.number("y", run.y);
  visitor.number("charCount", run.charCount);
  visitor.number("runClass", run.runClass);
}

}  // namespace

void visitText(const DrawPart& part, FieldVisitor& visitor) {
  const TextFields& fields = part.fields.text;
  const std::span<const char16_t> characters = textCharacters(part);
  visitor.number("runCount", fields.runCount);
  visitor.number("textLength", fields.textLength);
  visitor.text("text", {characters.data(), characters.size()});
  i32 index = 0;
  for (const TextRun& run : textRuns(part)) {
    visitor.enter("runs", index++);
    visitRun(run, visitor);
    visitor.number("runExtra", run.runExtra);
    visitor.leave();
  }
  visitor.number("fontId", fields.fontId);
  visitor.number("textFlags", fields.textFlags);
  visitor.number("rotation", fields.rotation);
  visitor.colour("colour", fields.colour);
  visitor.number("tint", fields.tint);
  index = 0;
  for (const TextRun& run : extensionRuns(part)) {
    visitor.enter("extensionRuns", index++);
    visitRun(run, visitor);
    visitor.leave();
  }
  index = 0;
  for (const OutlineRecord& record : outlineRecords(part)) {
    visitor.enter("outlineRecords", index++);
    visitNumbers("values", record, visitor);
    visitor.leave();
  }
}

void visitTextProp(const DrawPart& part, FieldVisitor& visitor) {
  const TextPropFields& fields = part.fields.textProp;
  visitor.number("propKind", fields.propKind);
  visitor.number("propValue", fields.propValue);
  visitor.number("lengthA", fields.lengthA);
  visitor.number("lengthB", fields.lengthB);
  visitor.number("lengthC", fields.lengthC);
  visitor.number("lengthD", fields.lengthD);
  visitor.number("propExtra", fields.propExtra);
  visitor.text("text", {part.payload.at<char16_t>(0), part.payload.size() / sizeof(char16_t)});
}

}  // namespace rvf
