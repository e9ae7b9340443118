#include "pagemodel/NameValue.h"

#include <utility>

namespace rvf {

std::unique_ptr<NameValues> copyOf(const std::unique_ptr<NameValues>& values) {
  return values == nullptr ? nullptr : std::make_unique<NameValues>(*values);
}

NameValue readNameValue(eArchive& archive, NameValueForm form) {
  NameValue entry;
  archive.ReadString(entry.name);
  entry.number = form == NameValueForm::kNumbered ? archive.ReadI32() : 0;
  entry.hasValue = archive.ReadI32();
  if (entry.hasValue != 0) {
    archive.ReadString(entry.value);
  }
  return entry;
}

std::unique_ptr<NameValues> readNameValues(eArchive& archive, i32 stored, i32 kept,
                                           NameValueForm form) {
  auto values = std::make_unique<NameValues>();
  for (i32 i = 0; i < stored && !archive.failed(); ++i) {
    NameValue entry = readNameValue(archive, form);
    if (i < kept && !archive.failed()) {
      values->push_back(std::move(entry));
    }
  }
  return values->empty() ? nullptr : std::move(values);
}

}  // namespace rvf
