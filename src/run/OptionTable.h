#pragma once

#include <span>
#include <string_view>

#include "run/RunOptions.h"
#include "text/eString.h"

namespace rvf {

/// One option: how it is written, what the usage text says of it, what it does.
struct OptionRow {
  std::u16string_view name;  // in upper case
  /// The value as the usage text shows it. Empty: the option has none and is only accepted without
  /// "="; all others are only accepted with it.
  std::u16string_view valueForm;
  std::u16string_view help;
  /// Sets the option. Returns false when the value is not understood.
  bool (*apply)(RunOptions& options, const eString& value);
  /// What a value is taken as that is accepted, but not as it is written; empty for one that is.
  /// Null: every value is taken as written.
  eString (*takenAs)(const RunOptions& options, const eString& value) = nullptr;

  [[nodiscard]] bool takesValue() const { return !valueForm.empty(); }
};

/// All options, in the order of the usage text.
[[nodiscard]] std::span<const OptionRow> optionTable();

/// The option of this name (upper case) that takes a value or does not; null when there is none.
[[nodiscard]] const OptionRow* findOption(const eString& name, bool withValue);

/// The encoding id with which a control file is read when CONTROLFILEENCODING has this value.
[[nodiscard]] i32 controlFileEncodingId(const eString& name);

}  // namespace rvf
