# Puts style and scripts into a page, with the hashes by which its policy allows them, and writes the page
# as a source of the program, split where its data belongs.
#   cmake -DFOLDER=... -DPAGE=a.html -DSTYLES=a.css,b.css -DSCRIPTS=a.js,b.js -DNAME=Report -DOUTPUT=... -P embed.cmake

# The form that a policy requires: base64 of the 32 bytes.
function(policy_hash text result)
  string(SHA256 digits "${text}")
  set(alphabet ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/)
  set(encoded "")
  foreach(at RANGE 0 60 6)
    string(SUBSTRING "${digits}00" ${at} 6 part)
    math(EXPR bits "0x${part}")
    foreach(shift 18 12 6 0)
      math(EXPR index "${bits} >> ${shift} & 63")
      string(SUBSTRING ${alphabet} ${index} 1 letter)
      string(APPEND encoded "${letter}")
    endforeach()
  endforeach()
  # 32 bytes are 10 groups of three bytes, plus two bytes that take three letters and a sign.
  string(SUBSTRING "${encoded}" 0 43 encoded)
  set(${result} "sha256-${encoded}=" PARENT_SCOPE)
endfunction()

function(read_all names result)
  set(all "")
  string(REPLACE "," ";" names "${names}")
  foreach(name IN LISTS names)
    file(READ "${FOLDER}/${name}" text)
    string(APPEND all "${text}")
  endforeach()
  set(${result} "${all}" PARENT_SCOPE)
endfunction()

file(READ "${FOLDER}/${PAGE}" page)
read_all("${STYLES}" style)
read_all("${SCRIPTS}" script)
policy_hash("${style}" style_hash)
policy_hash("${script}" script_hash)
foreach(name style style_hash script_hash script)
  string(REPLACE "@${name}@" "${${name}}" page "${page}")
endforeach()

string(FIND "${page}" "@data@" cut)
string(SUBSTRING "${page}" 0 ${cut} head)
math(EXPR rest "${cut} + 6")
string(SUBSTRING "${page}" ${rest} -1 tail)
file(WRITE "${OUTPUT}" "#include \"inspect/output/ReportAssets.h\"

namespace rvf::inspect {

const std::string_view k${NAME}Head = R\"rvfpage(${head})rvfpage\";
const std::string_view k${NAME}Tail = R\"rvfpage(${tail})rvfpage\";

}  // namespace rvf::inspect
")
