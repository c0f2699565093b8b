# Language, warnings and sanitizers: the same for every target.
set(CMAKE_C_STANDARD 11)
set(CMAKE_C_STANDARD_REQUIRED ON)
set(CMAKE_C_EXTENSIONS OFF)
set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_CXX_SCAN_FOR_MODULES OFF)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)

# fopencookie and the dynamic loader's calls are GNU extensions of libc.
add_compile_definitions(_GNU_SOURCE)

# Every float is rounded where the source says so: no contraction to fused operations.
add_compile_options(-ffp-contract=off)

# Files that are compiled together share the headers that they include. The names in their unnamed namespaces must differ.
set(CMAKE_UNITY_BUILD ${PMCLI_UNITY})
set(CMAKE_UNITY_BUILD_BATCH_SIZE 16)

# What our own targets promise; headers of other projects are exempt as system headers.
set(PMCLI_WARNINGS -Wall -Wextra -Wpedantic -Wconversion -Wshadow)
if(CMAKE_CXX_COMPILER_ID STREQUAL "Clang")
  # Two callees of one name must not differ in what they accept from a C caller; the edge is C++ by design.
  list(APPEND PMCLI_WARNINGS -Wno-return-type-c-linkage)
elseif(CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
  # gcc 12 sees overlaps and overflows in std::string and std::vector that are not there, once it optimises.
  list(APPEND PMCLI_WARNINGS -Wno-restrict -Wno-stringop-overflow -Wno-stringop-overread)
endif()

if(PMCLI_SANITIZE)
  add_compile_options(-fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer)
  add_link_options(-fsanitize=address,undefined)
  if(CMAKE_CXX_COMPILER_ID STREQUAL "Clang")
    add_compile_options(-fsanitize-ignorelist=${PROJECT_SOURCE_DIR}/cmake/sanitizers.ignore)
  endif()
endif()

# A loader that finds little to do is part of the speed: what only the programs need lies in them. A target with the property
# PMCLI_SHARED_RUNTIME has the runtime of the program that loads it.
if(PMCLI_STATIC_RUNTIME)
  add_link_options("$<$<NOT:$<BOOL:$<TARGET_PROPERTY:PMCLI_SHARED_RUNTIME>>>:-static-libstdc++;-static-libgcc>")
  add_link_options(-Wl,--exclude-libs,ALL)
endif()

# Sets `variable` to what is linked for a package: its archive where programs are to hold it, else its imported target.
function(choose_library variable imported archive)
  set(chosen ${imported})
  if(PMCLI_STATIC_RUNTIME)
    find_library(PMCLI_ARCHIVE_${archive} lib${archive}.a)
    if(PMCLI_ARCHIVE_${archive})
      set(chosen ${PMCLI_ARCHIVE_${archive}})
    endif()
  endif()
  set(${variable} ${chosen} CACHE INTERNAL "")
endfunction()

if(PMCLI_COVERAGE)
  add_compile_options(--coverage -fprofile-abs-path)
  add_link_options(--coverage)
  add_compile_definitions(PMCLI_COVERAGE)
endif()

# Everything below build/<preset>/ that runs together lies in bin/ and lib/.
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/bin)
set(CMAKE_LIBRARY_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/lib)
