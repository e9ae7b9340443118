#pragma once

#include <memory>
#include <string>

#include "inspect/model/CaptureFile.h"
#include "inspect/output/Output.h"

namespace rvf::inspect {

/// Writes the contents of a capture file in the order of the calls.
class DumpWriter {
 public:
  explicit DumpWriter(Output& output) : output_(output) {}
  virtual ~DumpWriter() = default;

  virtual void file(const CaptureFile& file) = 0;
  virtual void object(i32 objectType, i32 index, const DrawStatic& object) = 0;
  virtual void customer(i32 index, const CustomerRecord& customer) = 0;
  /// The index's entry of a page.
  virtual void page(i32 customer, i32 index, const PageRecord& page) = 0;
  /// The body of the last page passed to `page`, up to `end`; -1 if it is damaged.
  virtual void body(const CompareContext& page, i64 end) = 0;
  virtual void damage(const std::string& what) = 0;
  void list(const std::string& name, const DrawList& list);

 protected:
  virtual void listHead(const std::string& name, const DrawList& list) = 0;
  virtual void part(const std::string& listName, i32 index, const DrawPart& part) = 0;

  Output& output_;
};

[[nodiscard]] std::unique_ptr<DumpWriter> makeTextDumpWriter(Output& output);
[[nodiscard]] std::unique_ptr<DumpWriter> makeJsonDumpWriter(Output& output);

}  // namespace rvf::inspect
