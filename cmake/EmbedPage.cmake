# Writes a C++ file that contains the page's skeleton, style sheet and script:
#   cmake -D FOLDER=Page -D OUTPUT=PageFiles.cpp -P EmbedPage.cmake
# Also computes the hashes of style sheet and script. The page's content policy lists them, so that a browser uses no
# others.

# The SHA-256 of a text, in base64.
function(hash_of text result)
  string(SHA256 hex "${text}")
  set(alphabet ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/)
  string(APPEND hex 00)  # 66 digits: 22 groups of three, each of which is two characters of base64
  set(base64 "")
  foreach(group RANGE 21)
    math(EXPR at "${group} * 3")
    string(SUBSTRING ${hex} ${at} 3 digits)
    math(EXPR high "0x${digits} >> 6")
    math(EXPR low "0x${digits} & 63")
    string(SUBSTRING ${alphabet} ${high} 1 first)
    string(SUBSTRING ${alphabet} ${low} 1 second)
    string(APPEND base64 ${first}${second})
  endforeach()
  # Remove the last character, which comes from the two digits added above.
  string(SUBSTRING ${base64} 0 43 base64)
  set(${result} "${base64}=" PARENT_SCOPE)
endfunction()

file(READ ${FOLDER}/page.html skeleton)
file(READ ${FOLDER}/page.css style)
file(READ ${FOLDER}/page.js script)
hash_of("${style}" style_hash)
hash_of("${script}" script_hash)
foreach(part style_hash script_hash style script)
  string(REPLACE "{{${part}}}" "${${part}}" skeleton "${skeleton}")
endforeach()
# Compilers limit the length of a literal; adjacent literals are joined.
string(LENGTH "${skeleton}" length)
set(pieces "")
set(at 0)
while(at LESS length)
  string(SUBSTRING "${skeleton}" ${at} 8000 piece)
  string(APPEND pieces "R\"~~~(${piece})~~~\"\n")
  math(EXPR at "${at} + 8000")
endwhile()
file(WRITE ${OUTPUT} "#include \"Page/PageFiles.h\"\n\nnamespace page {\n\n"
  "const std::string_view kPageSkeleton =\n${pieces};\n\n}  // namespace page\n")
