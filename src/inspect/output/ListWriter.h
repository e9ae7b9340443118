#pragma once

#include <memory>
#include <string>

#include "inspect/model/DifferenceFileReader.h"
#include "inspect/output/Output.h"

namespace rvf::inspect {

/// Shows difference files one after another, with the pages that are passed to it.
class ListWriter : public DifferenceVisitor {
 public:
  explicit ListWriter(Output& output) : output_(output) {}
  virtual void begin(const std::string& path) = 0;
  /// `lack` is empty for a complete file.
  virtual void end(const std::string& lack) = 0;
  /// Called after the last file.
  virtual void finish() {}

 protected:
  Output& output_;
};

[[nodiscard]] std::unique_ptr<ListWriter> makeTextListWriter(Output& output);
[[nodiscard]] std::unique_ptr<ListWriter> makeJsonListWriter(Output& output);
[[nodiscard]] std::unique_ptr<ListWriter> makeJUnitListWriter(Output& output);

}  // namespace rvf::inspect
