#pragma once

#include <span>
#include <string_view>

#include "run/RunOptions.h"
#include "text/eString.h"

namespace rvf {

/// An option: its form, help text and effect.
struct OptionRow {
  std::u16string_view name;  // in upper case
  /// The value as the usage text shows it. Empty if the option has no value: it is then accepted
  /// only without "="; all others are accepted only with it.
  std::u16string_view valueForm;
  std::u16string_view help;
  /// Sets the option. Returns false if the value is not understood.
  bool (*apply)(RunOptions& options, const eString& value);
  /// How an accepted value is interpreted, if not as written; otherwise empty. Null if every value
  /// is taken as written.
  eString (*takenAs)(const RunOptions& options, const eString& value) = nullptr;

  [[nodiscard]] bool takesValue() const { return !valueForm.empty(); }
};

/// All options, in the order of the usage text.
[[nodiscard]] std::span<const OptionRow> optionTable();

/// The option with this name (upper case) that takes a value, or takes none; null if there is no
/// such option.
[[nodiscard]] const OptionRow* findOption(const eString& name, bool withValue);

/// The encoding id of control files for this value of CONTROLFILEENCODING.
[[nodiscard]] i32 controlFileEncodingId(const eString& name);

}  // namespace rvf
