#include <gtest/gtest.h>

#include <filesystem>

#include "output/postprocessor/PostProcessorForm.h"
#include "support/FakePlatform.h"

namespace isolith {
namespace {

namespace fs = std::filesystem;
using test::FakePlatform;

TEST(PostProcessorForm, TemplateBracketMessages) {
  struct Case {
    const char* edit;
    std::string_view message;
    size_t position;
  };
  const Case cases[] = {
      {"G01[ X<X>[ Y<Y>]", kUnexpectedOpening, 9}, {"G01[ X<X>\r\n Y<Y>]", kExpectedClosing, 9},
      {"G01[ X<X>\\\\]", kExpectedClosing, 9},     {"G01 X<X>]", kUnexpectedClosing, 8},
      {"G01[ X<X>][ Y", kExpectedClosing, 13},     {"A\r\nB]", kUnexpectedClosing, 4},
  };
  for (const Case& c : cases) {
    FakePlatform platform;
    std::string text = "before";
    size_t position = 99;
    EXPECT_FALSE(ValidateTemplate(platform, c.edit, kTemplateWidth, text, true, &position))
        << c.edit;
    ASSERT_EQ(platform.messages.size(), 1u) << c.edit;
    EXPECT_EQ(platform.messages[0].title, "Error");
    EXPECT_EQ(platform.messages[0].text, c.message) << c.edit;
    EXPECT_EQ(position, c.position) << c.edit;
    EXPECT_EQ(text, "before");
  }
  EXPECT_EQ(kUnexpectedOpening, "Unexpected ''['' opening square bracket.");
  EXPECT_EQ(kExpectedClosing, "Expected '']'' closing square bracket.");
  EXPECT_EQ(kUnexpectedClosing, "Unexpected '']'' closing square bracket.");

  // Good brackets, and any brackets when not strict; line breaks become the template break.
  FakePlatform platform;
  std::string text;
  EXPECT_TRUE(ValidateTemplate(platform, "G00[ X<X>]\r\nG01\nM3", 100, text, true));
  EXPECT_EQ(text, "G00[ X<X>]\\\\G01\\\\M3");
  EXPECT_TRUE(ValidateTemplate(platform, "T<T> ] [", 100, text, false));
  EXPECT_EQ(text, "T<T> ] [");
  EXPECT_TRUE(ValidateTemplate(platform, "abcdef", 4, text, false));
  EXPECT_EQ(text, "abcd");
  EXPECT_TRUE(platform.messages.empty());
}

TEST(PostProcessorForm, AcceptChecksInOrderAndWritesBack) {
  TPostProcessor pp;
  Settings settings;
  FakePlatform platform;
  platform.decimalSeparator = ',';
  TDialogPostPro form(pp, settings, "/nowhere/", ',');
  EXPECT_EQ(form.title, "ISO standard");
  EXPECT_EQ(form.scaleV, "0,001");
  EXPECT_EQ(form.formatXY, "0.00");
  EXPECT_EQ(form.trailer1, "13");

  // A motion template with a stray bracket: refused there, the selection on the fault.
  form.toolChg = "T<T>[";  // not a motion template: its brackets are not checked
  form.feedXYZ = "G01[ X<X>";
  form.header1 = "300";
  EXPECT_FALSE(form.Accept(platform));
  // Header bytes come first in the dialog.
  EXPECT_EQ(form.focus, TDialogPostPro::kHeader1);
  form.header1 = "2*3";
  EXPECT_FALSE(form.Accept(platform));
  EXPECT_EQ(form.focus, TDialogPostPro::kFeedXYZ);
  EXPECT_EQ(form.selection, 9u);
  EXPECT_EQ(platform.LastMessage(), kExpectedClosing);
  EXPECT_EQ(pp.ToolChg, "T<T> M06");  // nothing written back yet

  form.feedXYZ = "G01[ X<X>]\r\n[ Y<Y>]";
  form.scaleX = "1000001";
  EXPECT_FALSE(form.Accept(platform));
  EXPECT_EQ(form.focus, TDialogPostPro::kScaleX);
  form.scaleX = "2,5";
  form.offsetA = "-400";
  EXPECT_FALSE(form.Accept(platform));
  EXPECT_EQ(form.focus, TDialogPostPro::kOffsetA);
  form.offsetA = "-90";

  form.fileExt = "tap";
  form.incNb = "0";
  form.formatZ = "000,0";
  form.hexa = true;
  form.originXY = 4;
  form.scaleRPM = "-3";  // no limits of its own
  EXPECT_TRUE(form.Accept(platform));
  EXPECT_EQ(form.focus, TDialogPostPro::kNoField);
  EXPECT_EQ(pp.Header1, 6);
  EXPECT_EQ(pp.ToolChg, "T<T>[");
  EXPECT_EQ(pp.FeedXYZ, "G01[ X<X>]\\\\[ Y<Y>]");
  EXPECT_FLOAT_EQ(pp.ScaleX, 2.5f);
  EXPECT_FLOAT_EQ(pp.OffsetA, -90);
  EXPECT_FLOAT_EQ(pp.ScaleRPM, -3);
  EXPECT_EQ(pp.IncNb, 0);
  EXPECT_EQ(pp.FormatZ.pad, '0');
  EXPECT_EQ(pp.FormatZ.decimalChar, ',');
  EXPECT_TRUE(pp.Hexa);
  EXPECT_EQ(pp.OriginXY, kOriginCentre);
  EXPECT_EQ(settings.PprExtension, "tap");
}

class PostProcessorDialogFlow : public ::testing::Test {
 protected:
  void SetUp() override {
    dir_ = fs::path(::testing::TempDir()) /
           ("isolith-ppf-form-" +
            std::string(::testing::UnitTest::GetInstance()->current_test_info()->name()));
    fs::remove_all(dir_);
    fs::create_directories(dir_ / "CONFIG");
    folder_ = dir_.string() + "/";
  }
  void TearDown() override { fs::remove_all(dir_); }

  fs::path dir_;
  std::string folder_;
};

TEST_F(PostProcessorDialogFlow, OkWritesAndCancelReadsBack) {
  TPostProcessor stored;
  stored.Title = "Stored";
  ASSERT_TRUE(WritePostProcessor(stored, folder_, kPostProcessorBaseName));
  TPostProcessor other;
  other.Title = "Other";
  other.FileExt = "cnc";
  ASSERT_TRUE(WritePostProcessor(other, folder_ + "CONFIG/", "other"));

  TPostProcessor pp;
  Settings settings;
  FakePlatform platform;
  // "Open..." loads a file into memory and the fields; Cancel then restores "Isolith.ppf".
  platform.files.push_back(folder_ + "CONFIG/other.ppf");
  platform.dialogs["TDialogPostPro"] = [&](DialogForm& form) {
    auto& dialog = static_cast<TDialogPostPro&>(form);
    EXPECT_EQ(dialog.title, "Stored");
    EXPECT_TRUE(dialog.OpenFile(platform));
    EXPECT_EQ(dialog.title, "Other");
    EXPECT_EQ(pp.Title, "Other");
    return false;
  };
  EXPECT_FALSE(EditPostProcessor(platform, pp, settings, folder_));
  EXPECT_EQ(pp.Title, "Stored");
  ASSERT_EQ(platform.fileRequests.size(), 1u);
  EXPECT_EQ(platform.fileRequests[0].title, "Post-processor");
  EXPECT_EQ(platform.fileRequests[0].folder, folder_ + "CONFIG/");
  ASSERT_EQ(platform.fileRequests[0].filters.size(), 1u);
  EXPECT_EQ(platform.fileRequests[0].filters[0].description, "Post-processor (*.PPF)");
  EXPECT_EQ(platform.fileRequests[0].filters[0].patterns, "*.ppf");

  // OK writes the record to "Isolith.ppf"; "Save..." writes the checked fields elsewhere.
  platform.files.push_back(folder_ + "CONFIG/saved.ppf");
  platform.dialogs["TDialogPostPro"] = [&](DialogForm& form) {
    auto& dialog = static_cast<TDialogPostPro&>(form);
    dialog.title = "Edited";
    EXPECT_TRUE(dialog.SaveFile(platform));
    return true;
  };
  EXPECT_TRUE(EditPostProcessor(platform, pp, settings, folder_));
  EXPECT_EQ(pp.Title, "Edited");
  TPostProcessor back;
  ASSERT_TRUE(ReadPostProcessor(back, folder_, kPostProcessorBaseName));
  EXPECT_EQ(back.Title, "Edited");
  ASSERT_TRUE(ReadPostProcessor(back, folder_ + "CONFIG/", "saved"));
  EXPECT_EQ(back.Title, "Edited");
  EXPECT_EQ(settings.PprExtension, "iso");

  // A file that cannot be read is said, and memory stays as it was.
  platform.files.push_back(folder_ + "CONFIG/missing.ppf");
  TDialogPostPro form(pp, settings, folder_, '.');
  EXPECT_FALSE(form.OpenFile(platform));
  EXPECT_EQ(platform.LastMessage(),
            "Unable to read post-processor file. ''" + folder_ + "CONFIG/missing.ppf''");
  EXPECT_EQ(pp.Title, "Edited");
  EXPECT_FALSE(form.OpenFile(platform));  // cancelled: no file left in the script
}

}  // namespace
}  // namespace isolith
