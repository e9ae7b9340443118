#pragma once

#include <memory>

#include "inspect/model/Inspection.h"
#include "inspect/output/Output.h"

namespace rvf::inspect {

enum class Grouping { kByPage, kByGroup };

struct TextStyle {
  bool isColoured = false;
  Grouping grouping = Grouping::kByPage;
  bool showsAllPages = false;
};

[[nodiscard]] std::unique_ptr<InspectionListener> makeTextChangesWriter(Output& output,
                                                                        const TextStyle& style);
[[nodiscard]] std::unique_ptr<InspectionListener> makeJsonChangesWriter(Output& output,
                                                                        bool showsAllPages);
[[nodiscard]] std::unique_ptr<InspectionListener> makeJUnitChangesWriter(Output& output);

}  // namespace rvf::inspect
