#include "xml/comment_tree.h"

#include "tests/xml/trees/xml_text.h"

namespace rubrica::test {
namespace {

std::string commentsXml(const std::string& list) {
  return std::string("<comments xmlns=\"") + kMain + "\"><authors><author>me</author></authors><commentList>" + list +
         "</commentList></comments>";
}

std::string comment(const std::string& ref, const std::string& rich) {
  return "<comment ref=\"" + ref + "\" authorId=\"0\"><text>" + rich + "</text></comment>";
}

std::optional<std::string> commentText(const comments::c_comments& root, int row, int col) {
  const auto position = CommentPlaces(root).find(row, col);
  return position ? std::optional(rubrica::commentText(root, *position)) : std::nullopt;
}

TEST(CommentTrees, GiveTheTextOfTheCell) {
  comments::c_comments root;
  fill(root, commentsXml(comment("B2", "<t>plain</t>") +
                         comment("C3", "<r><rPr><b/></rPr><t>me:</t></r><r><t xml:space=\"preserve\"> runs</t></r>") +
                         comment("D4", "") + comment("B2", "<t>second</t>")));
  EXPECT_EQ(commentText(root, 1, 1), "plain");
  EXPECT_EQ(commentText(root, 2, 2), "me: runs");
  EXPECT_EQ(commentText(root, 3, 3), "");
  EXPECT_EQ(commentText(root, 0, 0), std::nullopt);
  EXPECT_EQ(commentText(comments::c_comments(), 0, 0), std::nullopt);
}

TEST(CommentTrees, MoveWithTheirCells) {
  comments::c_comments root;
  fill(root, commentsXml(comment("A1", "<t>stays</t>") + comment("B5", "<t>goes</t>") + comment("C6", "<t>moves</t>") +
                         comment("nowhere", "<t>odd</t>")));
  moveComments(root, {kXlsxGrid, LineMove::Axis::rows, LineMove::Kind::remove, 4, 4});
  EXPECT_EQ(commentText(root, 0, 0), "stays");
  EXPECT_EQ(commentText(root, 4, 2), "moves");
  ASSERT_EQ(root.get_commentList().size_comment(), 3U);
  EXPECT_EQ(root.get_commentList().get_comment(2).get_ref(), "nowhere");
  moveComments(root, {kXlsxGrid, LineMove::Axis::columns, LineMove::Kind::insert, 1, 16383});
  EXPECT_EQ(root.get_commentList().size_comment(), 2U) << "a comment that leaves the sheet is gone";
  EXPECT_EQ(commentText(root, 0, 0), "stays");
}

}  // namespace
}  // namespace rubrica::test
