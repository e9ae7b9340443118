// Writes the two files in samples/: the monthly job of a small insurer before and after a change.
//   make_samples [FOLDER]
// They are kept with the sources, so this only needs to be run to change them.

#include <cstdio>
#include <fstream>
#include <string>
#include <vector>

#include "support/Capture.h"

namespace {

using namespace rvf::test;

constexpr int kPageWidth = 2480, kPageHeight = 3508;
constexpr int kLeft = 250, kRight = 2230, kLineHeight = 56;  // in dots at 300 per inch, on A4
constexpr int kTextFont = 3, kHeadingFont = 4;
constexpr unsigned kBlack = 0x000000, kHouseBlue = 0x8A4B08, kHouseGreen = 0x3C7A1E,
                   kPaleBlue = 0xF7EBDE;

using Lines = std::vector<std::u16string>;
/// A text with one run per line.
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
  return rect({.area = {kLeft, top, kRight, bottom},
               .lineWidth = 3,
               .fillColour = fillColour,
               .lineColour = kHouseBlue});
}

/// A page with the company's logo and footer, which all pages of the job share.
PageFields sheet(const std::u16string& name, const std::vector<Part>& content) {
  PageBody body{.extentA = kPageWidth, .extentB = kPageHeight};
  body.list.parts = {staticRef({.x = 1900, .y = 120, .width = 330, .height = 180}), rule(340, 4)};
  body.list.parts.insert(body.list.parts.end(), content.begin(), content.end());
  const Lines footer = {u"Example Insurance, 4 Quay Street", u"Questions: 0800 555 0100"};
  body.placed = {{.list = {.parts = {paragraph(0, 0, footer)}}, .x = kLeft, .y = 3300}};
  return {.name = name, .body = body};
}

/// A PNG of 24 x 12 pixels, in hexadecimal digits.
constexpr const char* kLogoPng =
    "89504e470d0a1a0a0000000d49484452000000180000000c0802000000f752ea22000000244944415478da63"
    "e0f0ee82a30f5b34e088547186616c10259a91c587b341a3e988a03800a99e7f20ac4e44b20000000049454e"
    "44ae426082";

std::string bytesOf(const std::string& digits) {
  std::string bytes;
  for (std::size_t i = 0; i < digits.size(); i += 2) {
    bytes += static_cast<char>(std::stoi(digits.substr(i, 2), nullptr, 16));
  }
  return bytes;
}

/// The letterhead, which all pages refer to.
StaticFields letterhead() {
  const Part mark = image(
      {.area = {0, 0, 240, 120}, .pixelWidth = 24, .pixelHeight = 12, .bytes = bytesOf(kLogoPng)});
  const Part wave = poly({.points = {{0, 190}, {60, 140}, {120, 190}, {180, 140}, {240, 190}},
                          .noFill = 1,
                          .lineWidth = 4,
                          .lineColour = kHouseBlue});
  return {.first = {.parts = {mark, wave,
                              paragraph(-430, 60, {u"Example Insurance", u"Insured since 1950"})}},
          .name = u"letterhead"};
}

/// Rows of three cells under a heading, with rules between them.
std::vector<Part> table(int top, const std::vector<Lines>& rows) {
  std::vector<Part> parts;
  LineSetFields rules{.start = kLeft, .end = kRight, .offsets = {}, .width = 2};
  int y = top;
  for (const Lines& row : rows) {
    const int font = y == top ? kHeadingFont : kTextFont;
    for (std::size_t cell = 0; cell < row.size(); ++cell) {
      parts.push_back(paragraph(kLeft + 40 + 700 * static_cast<int>(cell), y, {row[cell]}, font));
    }
    rules.offsets.push_back(y + 20);
    y += kLineHeight + 14;
  }
  parts.push_back(lineSet(rules));
  return parts;
}

PageFields coverLetter(const std::u16string& name, int greetingX, const std::u16string& regards) {
  return sheet(u"Cover letter",
               {heading(u"Your policy for the new year"),
                paragraph(greetingX, 900, {u"Dear " + name + u","}),
                paragraph(kLeft, 1020,
                          {u"thank you for your trust. Your documents are enclosed.",
                           regards + u", your Example Insurance"})});
}

PageFields schedule(const std::u16string& premium) {
  std::vector<Part> parts = {
      heading(u"Household insurance"), box(860, 1120, kPaleBlue),
      paragraph(kLeft + 40, 920, {u"Sum insured   EUR 65,000", u"Excess        EUR 250"}),
      paragraph(kLeft + 40, 1060, {u"Premium       EUR " + premium})};
  const std::vector<Part> cover = table(1300, {{u"Cover", u"Limit", u"Excess"},
                                               {u"Fire and water", u"EUR 65,000", u"EUR 250"},
                                               {u"Theft", u"EUR 20,000", u"EUR 500"},
                                               {u"Bicycles", u"EUR 1,500", u"none"}});
  parts.insert(parts.end(), cover.begin(), cover.end());
  parts.push_back(image({.area = {1700, 1700, 2230, 2200}, .bytes = "floor plan of the home"}));
  return sheet(u"Policy schedule", parts);
}

PageFields statement(int totalWidth, unsigned boxColour) {
  return sheet(u"Premium statement",
               {heading(u"Statement"), box(860, 960, boxColour),
                paragraph(kLeft + 40, 925, {u"Period", u"January to December"}), rule(1200, 3),
                paragraph(kLeft, 1270, {u"Total"}), rule(1300, totalWidth)});
}

PageFields claimForm() {  // the markers enclose one stapled set
  return sheet(u"Claim form", {startEnd({.markerKind = 1}), heading(u"Report of a claim"),
                               box(860, 2600, kPaleBlue), startEnd({.markerKind = 2})});
}

PageFields privacyNotice() {
  return sheet(
      u"Privacy notice",
      {heading(u"Your data with us"),
       paragraph(kLeft, 900, {u"We keep what the law asks us to keep, and nothing else."})});
}

/// The monthly job before or after the change: a new closing in all letters, a premium, a line
/// width, a colour, a line of advertising, and an additional page.
CaptureFields job(bool changed) {
  const std::u16string regards = changed ? u"Kind regards" : u"With kind regards";
  CaptureFields file{.magic = kWideMagic, .label = u"Monthly run", .statics21 = {letterhead()}};
  PageFields promoted = coverLetter(u"Ms Lindgren", kLeft, regards);
  std::vector<Part>& parts = promoted.body->list.parts;
  if (changed) parts.insert(parts.begin(), paragraph(kLeft, 200, {u"New: pay by card online"}));
  file.customers = {
      {.id = u"100417 Weber",
       .pages = {coverLetter(u"Mr Weber", changed ? kLeft + 3 : kLeft, regards),
                 schedule(changed ? u"121.90" : u"118.40"), statement(changed ? 9 : 6, kPaleBlue),
                 claimForm()}},
      {.id = u"100418 Novak",
       .pages = {coverLetter(u"Ms Novak", kLeft, regards), schedule(u"118.40"),
                 statement(6, kPaleBlue)}},
      {.id = u"100419 Lindgren",
       .pages = {promoted, statement(6, changed ? kHouseGreen : kPaleBlue), schedule(u"118.40")}},
  };
  if (changed) {
    std::vector<PageFields>& pages = file.customers[2].pages;
    pages.insert(pages.begin() + 1, privacyNotice());
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
