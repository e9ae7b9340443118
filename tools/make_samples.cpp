// Writes the two files of samples/: the monthly job of a small insurer before and after a change.
//   make_samples [FOLDER]
// They are kept with the sources, so this is run only when they are to look otherwise.

#include <cstdio>
#include <fstream>
#include <string>
#include <vector>

#include "support/Capture.h"

namespace {

using namespace rvf::test;

constexpr int kLeft = 250, kRight = 2230, kLineHeight = 56;  // in dots, 300 an inch, on A4
constexpr int kTextFont = 3, kHeadingFont = 4;
constexpr unsigned kBlack = 0x000000, kHouseBlue = 0x8A4B08, kHouseGreen = 0x3C7A1E;

using Lines = std::vector<std::u16string>;
/// A text with one run a line.
Part paragraph(int x, int y, const Lines& lines, int fontId = kTextFont) {
  TextFields f{.text = u"", .runs = {}, .fontId = fontId, .rotation = 0, .colour = kBlack};
  for (const std::u16string& line : lines) {
    f.runs.push_back({.x = x, .y = y, .charCount = static_cast<int>(line.size())});
    f.text += line;
    y += kLineHeight;
  }
  return text(f);
}

Part heading(const std::u16string& words) { return paragraph(kLeft, 700, {words}, kHeadingFont); }

Part rule(int y, int width) {
  return line({.points = {{kLeft, y}, {kRight, y}}, .width = width, .colour = kHouseBlue});
}

Part box(int top, int bottom, unsigned fillColour) {
  return rect({.area = {kLeft, top, kRight, bottom}, .fillColour = fillColour});
}

/// A page with the company's logo and footer, which all pages of the job share.
PageFields sheet(const std::u16string& name, const std::vector<Part>& content) {
  PageBody body;
  body.list.parts = {staticRef({.x = 1900, .y = 120, .width = 330, .height = 180}), rule(340, 4)};
  body.list.parts.insert(body.list.parts.end(), content.begin(), content.end());
  const Lines footer = {u"Example Insurance, 4 Quay Street", u"Questions: 0800 555 0100"};
  body.placed = {{.list = {.parts = {paragraph(0, 0, footer)}}, .x = kLeft, .y = 3300}};
  return {.name = name, .body = body};
}

StaticFields logo() {
  const Part wave = poly({.points = {{0, 120}, {110, 40}, {220, 120}, {330, 40}, {330, 180}}});
  return {.first = {.parts = {wave, paragraph(40, 170, {u"Example Insurance"})}}, .name = u"logo"};
}

PageFields coverLetter(const std::u16string& name, int greetingX) {
  return sheet(u"Cover letter",
               {heading(u"Your policy for the new year"),
                paragraph(greetingX, 900, {u"Dear " + name + u","}),
                paragraph(kLeft, 1020,
                          {u"thank you for your trust. Your documents are enclosed.",
                           u"With kind regards, your Example Insurance"})});
}

PageFields schedule(const std::u16string& premium) {
  return sheet(u"Policy schedule",
               {heading(u"Household insurance"), box(860, 1240, kHouseBlue),
                paragraph(kLeft + 40, 920, {u"Sum insured   EUR 65,000", u"Excess        EUR 250"}),
                paragraph(kLeft + 40, 1060, {u"Premium       EUR " + premium}),
                image({.area = {1700, 1400, 2230, 1900}, .bytes = "floor plan of the home"})});
}

PageFields statement(int totalWidth, unsigned boxColour) {
  return sheet(u"Premium statement",
               {heading(u"Statement"), box(860, 960, boxColour),
                paragraph(kLeft + 40, 925, {u"Period", u"January to December"}), rule(1200, 3),
                paragraph(kLeft, 1270, {u"Total"}), rule(1300, totalWidth)});
}

PageFields claimForm() {  // the marker names the stretch that is stapled as one set
  return sheet(u"Claim form", {startEnd({.markerKind = 1}), heading(u"Report of a claim"),
                               box(860, 2600, kHouseBlue), startEnd({.markerKind = 2})});
}

CaptureFields job(bool changed) {
  CaptureFields file{.magic = kWideMagic, .label = u"Monthly run", .statics21 = {logo()}};
  PageFields promoted = coverLetter(u"Ms Lindgren", kLeft);
  std::vector<Part>& parts = promoted.body->list.parts;
  if (changed) parts.insert(parts.begin(), paragraph(kLeft, 200, {u"New: pay by card online"}));
  file.customers = {
      {.id = u"100417 Weber",
       .pages = {coverLetter(u"Mr Weber", changed ? kLeft + 3 : kLeft),
                 schedule(changed ? u"121.90" : u"118.40"), statement(changed ? 9 : 6, kHouseBlue),
                 claimForm()}},
      {.id = u"100418 Novak",
       .pages = {coverLetter(u"Ms Novak", kLeft), schedule(u"118.40"), statement(6, kHouseBlue)}},
      {.id = u"100419 Lindgren",
       .pages = {promoted, statement(6, changed ? kHouseGreen : kHouseBlue), schedule(u"118.40")}},
  };
  if (changed) {
    file.customers[2].pages.push_back(sheet(u"Privacy notice", {heading(u"Your data with us")}));
  }
  return file;
}

}  // namespace

int main(int argc, char** argv) {
  const std::string folder = argc > 1 ? argv[1] : "samples";
  for (const bool changed : {false, true}) {
    const std::string path = folder + (changed ? "/second.rvf" : "/first.rvf");
    std::ofstream file(path, std::ios::binary);
    if (!(file << writeCapture(job(changed)).bytes).flush()) {
      std::fprintf(stderr, "make_samples: %s cannot be written\n", path.c_str());
      return 1;
    }
  }
}
