// The tree of a YAML text, and what is refused as one.
#include "source/yaml/yaml_document.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <string>

#include "host/base/temporary_file.h"
#include "source/yaml/yaml_file_error.h"

namespace host {
namespace {

// What the tree holds, on one line: texts in quotes, each value with its line.
std::string written(const yaml_node& node) {
  std::string text = std::to_string(node.line);
  switch (node.what) {
    case yaml_node::type::nothing: return text + " nothing";
    case yaml_node::type::scalar: return text + " '" + node.text + "'";
    case yaml_node::type::list:
      text += " [";
      for (const yaml_node* const it : node.items) text += written(*it) + ",";
      return text + "]";
    default:
      text += " {";
      for (const yaml_entry& it : node.entries) text += written(*it.key) + ": " + written(*it.value) + ",";
      return text + "}";
  }
}

std::string tree_of(const std::string& content) { return written(yaml_document(content, "a.yaml").root()); }

// Why a text is refused; "accepted" if it is not.
std::string refusal_of(const std::string& content) {
  try {
    const yaml_document document(content, "a.yaml");
    return "accepted";
  } catch (const yaml_file_error& error) {
    return error.what();
  }
}

TEST(YamlDocument, HasValuesListsAndMapsWithTheirLines) {
  EXPECT_EQ(tree_of("word\n"), "1 'word'");
  EXPECT_EQ(tree_of("# a comment\na: 1\nb:\n  - x\n  - 'y z'\n"), "2 {2 'a': 2 '1',3 'b': 4 [4 'x',5 'y z',],}");
  EXPECT_EQ(tree_of("{a: [1,\n2], b: {c: d}}"), "1 {1 'a': 1 [1 '1',2 '2',],2 'b': 2 {2 'c': 2 'd',},}");
  EXPECT_EQ(tree_of("---\na: b\n...\n"), "2 {2 'a': 2 'b',}");
}

TEST(YamlDocument, HasNothingWhereAValueIsLeftOutOrNull) {
  EXPECT_EQ(tree_of("[~, null, Null, NULL, '', 'null', \"~\", nULL]"),
            "1 [1 nothing,1 nothing,1 nothing,1 nothing,1 '',1 'null',1 '~',1 'nULL',]");
  EXPECT_EQ(tree_of("a:\nb: 1\n"), "1 {1 'a': 1 nothing,2 'b': 2 '1',}");
}

TEST(YamlDocument, FindsTheFirstValueOfAKey) {
  const yaml_document document("a: 1\nb: 2\nb: 3\n[b]: 4\n", "a.yaml");
  ASSERT_NE(document.root().find("b"), nullptr);
  EXPECT_EQ(document.root().find("b")->text, "2");
  EXPECT_EQ(document.root().find("c"), nullptr);
  EXPECT_EQ(document.root().find("a")->find("a"), nullptr);
}

TEST(YamlDocument, AliasesAreTheValueOfTheirAnchor) {
  EXPECT_EQ(tree_of("a: &x [1]\nb: *x\nc: &x 2\nd: *x\n"),
            "1 {1 'a': 1 [1 '1',],2 'b': 1 [1 '1',],3 'c': 3 '2',4 'd': 3 '2',}");
  EXPECT_EQ(refusal_of("a: 1\nb: *x\n"), "a.yaml:2: not YAML: no anchor 'x'");
  EXPECT_EQ(refusal_of("a: 1\nb: &x\n  - *x\n"), "a.yaml:3: alias 'x' is part of its own anchor");
}

TEST(YamlDocument, IsTheOnlyOneOfItsText) {
  EXPECT_EQ(refusal_of(""), "a.yaml: the file is empty");
  EXPECT_EQ(refusal_of("# nothing\n"), "a.yaml: the file is empty");
  EXPECT_EQ(refusal_of("---\n...\n"), "a.yaml: the file is empty");
  EXPECT_EQ(refusal_of("a: 1\n---\n\nb: 2\n"), "a.yaml:4: a second document");
}

// The rest of the sentence is the package's.
TEST(YamlDocument, FaultsHaveTheirLine) {
  constexpr const char* kFaults[][2] = {{",", "a.yaml:1: not YAML: "},
                                        {"  : \n,", "a.yaml:1: not YAML: "},  // of the map
                                        {"a: [1\nb: 2\n", "a.yaml:2: not YAML: "},
                                        {"a: 1\n\tb: 2\n", "a.yaml:2: not YAML: "},
                                        {"a: 'x\n", "a.yaml:2: not YAML: "},
                                        {"a: 1\nb: \x1b[0m\n", "a.yaml:2: not YAML: "},
                                        {"a: 1\n\nb: \xff\n", "a.yaml:3: not YAML: "}};
  for (const auto& [content, begin] : kFaults)
    EXPECT_EQ(refusal_of(content).substr(0, std::string(begin).size()), begin) << content;
}

TEST(YamlDocument, NestingIsLimited) {
  EXPECT_EQ(refusal_of(std::string(64, '[') + std::string(64, ']')), "accepted");
  EXPECT_EQ(refusal_of("a: 1\nb: " + std::string(64, '[') + std::string(64, ']')),
            "a.yaml:2: lists and maps are nested more than 64 deep");
  EXPECT_EQ(refusal_of(std::string(1'000'000, '[')), "a.yaml:1: lists and maps are nested more than 64 deep");
}

TEST(YamlDocument, ValuesAreLimited) {
  std::string list = "[";
  for (int i = 0; i < 999'999; ++i) list += "1,";
  EXPECT_EQ(refusal_of(list + "]"), "accepted");
  EXPECT_EQ(refusal_of(list + "\n1]"), "a.yaml:2: more than 1000000 values");
}

// Each level repeats the one above it ten times.
TEST(YamlDocument, ValuesOfAliasesCount) {
  std::string content = "l0: &l0 word\n";
  for (int level = 1; level < 9; ++level) {
    const std::string name = "l" + std::to_string(level), above = "*l" + std::to_string(level - 1);
    content += name + ": &" + name + " [" + above;
    for (int i = 1; i < 10; ++i) content += "," + above;
    content += "]\n";
  }
  EXPECT_EQ(refusal_of(content), "a.yaml:7: more than 1000000 values");
}

TEST(YamlFile, IsNotReadWithoutEnd) {
  const temporary_file file("");
  ASSERT_EQ(truncate(file.path().c_str(), 64 * 1024 * 1024 + 1), 0);
  try {
    load_yaml_file(file.path());
    ADD_FAILURE() << "accepted";
  } catch (const yaml_file_error& error) {
    EXPECT_EQ(error.what(), file.path() + ": File too large");
  }
}

}  // namespace
}  // namespace host
