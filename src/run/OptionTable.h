#pragma once

#include <span>
#include <string_view>

#include "run/RunOptions.h"
#include "text/eString.h"

namespace rvf {

/// One option: its form, its help text, its effect.
struct OptionRow {
  std::u16string_view name;  // in upper case
  /// The value as the usage text shows it. Empty if the option has no value: it is then only
  /// accepted without "="; all others are only accepted with it.
  std::u16string_view valueForm;
  std::u16string_view help;
  /// Sets the option. Returns false when the value is not understood.
  bool (*apply)(RunOptions& options, const eString& value);
  /// What an accepted value is taken as if that differs from how it is written, otherwise empty.
  /// Null if every value is taken as written.
  eString (*takenAs)(const RunOptions& options, const eString& value) = nullptr;

  [[nodiscard]] bool takesValue() const { return !valueForm.empty(); }
};

/// All options, in the order of the usage text.
[[nodiscard]] std::span<const OptionRow> optionTable();

/// The option of this name (upper case) that takes a value, or that takes none; null if there is no
/// such option.
[[nodiscard]] const OptionRow* findOption(const eString& name, bool withValue);

/// The encoding id of control files for this value of CONTROLFILEENCODING.
[[nodiscard]] i32 controlFileEncodingId(const eString& name);

}  // namespace rvf
