#include "run/RunReport.h"

#include "compare/DiffFlags.h"
#include "datetime/DateTime.h"
#include "text/eString.h"
#include "text/encoding/TextSink.h"

namespace rvf {

namespace {

constexpr const char16_t* kRule =
    u" *******************************************************************************";

// The product number in the banner.
constexpr const char16_t* kBannerNumber = u"178236";

struct DifferenceLine {
  DiffFlags bit;
  const char16_t* line;
};

constexpr DifferenceLine kDifferenceLines[] = {
    {diff::kCustomers, u"\t           --- Customers ---"},
    {diff::kPageCount, u"\t           --- Page count ---"},
    {diff::kReserved21, u"\t           --- QZ_CMP_RESERVED21 ---"},
    {diff::kReserved20, u"\t           --- QZ_CMP_RESERVED20 ---"},
    {diff::kReserved19, u"\t           --- QZ_CMP_RESERVED19 ---"},
    {diff::kShapes, u"\t           --- Shapes ---"},
    {diff::kLines, u"\t           --- Lines ---"},
    {diff::kFonts, u"\t           --- Fonts ---"},
    {diff::kImages, u"\t           --- Images ---"},
    {diff::kText, u"\t           --- Text ---"},
    {diff::kBorderLines, u"\t           --- Border lines (object outlines) ---"},
    {diff::kRotation, u"\t           --- Angle of rotation ---"},
    {diff::kColor, u"\t           --- Color ---"},
    {diff::kContent, u"\t           --- Content ---"},
    {diff::kLineWidth, u"\t           --- Line Width (out of tolerance) ---"},
    {diff::kPosition, u"\t           --- Position (out of tolerance) ---"},
    {diff::kReserved16, u"\t           --- QZ_CMP_RESERVED16 ---"},
    {diff::kReserved8, u"\t           --- QZ_CMP_RESERVED8 ---"},
    {diff::kReserved4, u"\t           --- QZ_CMP_RESERVED4 ---"},
    {diff::kReserved2, u"\t           --- QZ_CMP_RESERVED2 ---"},
    {diff::kDrawOrder, u"\t           --- Draw Order ---"},
};

template <class... Arguments>
void writeLine(TextSink& sink, const char16_t* format, const Arguments&... arguments) {
  eString line;
  line.Format(format, arguments...);
  sink.WriteLine(line.c_str(), LineEnd::kWritten);
}

void writeDifferences(TextSink& sink, DiffFlags status) {
  writeLine(sink, u" ************ Differences of the following types encountered! ************");
  for (const DifferenceLine& row : kDifferenceLines) {
    if ((status & row.bit) != 0) {
      writeLine(sink, row.line);
    }
  }
}

}  // namespace

void writeBanner(TextSink* sink, const char16_t* label) {
  if (sink == nullptr) {
    return;
  }
  const DateTime now;
  i32 month = 0;
  i32 day = 0;
  i32 year = 0;
  now.GetDate(month, day, year, MonthsFrom::kOne);
  writeLine(*sink, kRule);
  writeLine(*sink, u" * Plenarix Batch Compare Utility Version %ls 32-bit (DBCS)", kProgramVersion);
  writeLine(*sink, u" * Execution Begins: %d/%d/%d   %.2d:%.2d:%.2d", month, day, year,
            now.GetHour(), now.GetMinute(), now.GetSecond());
  writeLine(*sink, u" * %ls  (%ls)", label, kBannerNumber);
  writeLine(*sink, kRule);
}

void writeOptionsSummary(TextSink& sink, const Tolerances& tolerances) {
  writeLine(sink, kRule);
  writeLine(sink,
            u" *         Summary of Plenarix Run Options                                     *");
  writeLine(sink, kRule);
  writeLine(sink, u" Positional Tolerance: %d.", tolerances.positionTolerance);
  writeLine(sink, u" Line Thickness Tolerance: %d.", tolerances.lineTolerance);
  writeLine(sink, kRule);
}

void writeClosingReport(TextSink& sink, i32 status) {
  writeLine(sink, kRule);
  writeLine(sink, u" ***                   --- Diff Completed ---                        ***");
  writeLine(sink, u" ***                  --- Return Code %7i ---                      ***",
            status);
  writeLine(sink, kRule);
  if (status >= static_cast<i32>(diff::kResolution)) {
    writeLine(sink,
              u"\t           --- The output files are different resolutions and cannot be "
              u"compared ---");
    writeLine(sink, u"\t           --- Processing was halted due to errors ---");
  } else if (status > 0) {
    writeDifferences(sink, static_cast<DiffFlags>(status));
  } else if (status == 0) {
    writeLine(sink, u"\t           --- The files are identical ---");
  }
}

}  // namespace rvf
