#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <sstream>

#include "output/postprocessor/PostProcessor.h"

namespace isolith {
namespace {

namespace fs = std::filesystem;

class PostProcessorFile : public ::testing::Test {
 protected:
  void SetUp() override {
    dir_ = fs::path(::testing::TempDir()) /
           ("isolith-ppf-" +
            std::string(::testing::UnitTest::GetInstance()->current_test_info()->name()));
    fs::remove_all(dir_);
    fs::create_directories(dir_);
    folder_ = dir_.string() + "/";
  }
  void TearDown() override { fs::remove_all(dir_); }

  std::string Slurp(const fs::path& path) {
    std::ifstream in(path, std::ios::binary);
    std::stringstream s;
    s << in.rdbuf();
    return s.str();
  }
  void Put(const fs::path& path, std::string_view text) {
    std::ofstream(path, std::ios::binary) << text;
  }

  fs::path dir_;
  std::string folder_;
};

TEST_F(PostProcessorFile, LayoutOfTheDefaultFile) {
  const std::string text = PostProcessorFileText(TPostProcessor{});
  EXPECT_TRUE(text.starts_with(
      "[Post-Processor]\r\nTitle=ISO standard\r\nFileExt=iso\r\nHeader1=0\r\nHeader2=0\r\n"
      "Header3=0\r\nTrailer1=13\r\nTrailer2=10\r\nTrailer3=0\r\nLineNb=N0 \r\nBeginNb=2\r\n"
      "EndNb=999999\r\nIncNb=1\r\n"
      "FileTop=( Torvane / ISO Post-Processor )\\\\%1\\\\N1 G00 G90 G94 G71 G40 G54 G80\r\n"
      "FileBottom=M02\r\nToolChg=T<T> M06\r\n"))
      << text;
  for (const char* line :
       {"\r\nHome=M34\\\\M33\\\\M32\r\n", "\r\nOutputOn=\r\n", "\r\nScaleRPM=1\r\n",
        "\r\nFormatRPM=0\r\n", "\r\nClearXYZ=G00[ F<V>][ X<X>][ Y<Y>][ Z<Z>]\r\n",
        "\r\nArcs=Yes\r\nNoZeros=Yes\r\nRelCoords=No\r\nHexa=No\r\n", "\r\nScaleV=0.001\r\n",
        "\r\nFormatXY=0.00\r\n", "\r\nFormatV=0.000\r\n", "\r\nFormatA=0.0\r\n",
        "\r\nOriginXY=0\r\nOriginZ=0\r\nOffsetX=0\r\n"})
    EXPECT_NE(text.find(line), std::string::npos) << line;
  EXPECT_TRUE(text.ends_with("\r\nOffsetA=0\r\n"));
}

TEST_F(PostProcessorFile, RoundTripKeepsEveryField) {
  TPostProcessor pp;
  pp.Title = "Mill 3000";
  pp.FileExt = "nc";
  pp.Header1 = 37;
  pp.Trailer1 = 0;  // an explicit 0 stays 0 across the file
  pp.Trailer2 = 10;
  pp.LineNb = "N0000 ";
  pp.BeginNb = 0;
  pp.EndNb = 2147483647;
  pp.IncNb = 0;
  pp.FileTop = "%\\\\O1234 (a=b)";
  pp.FileBottom = "<N>M30\\\\%";
  pp.ClearV = "F<V>";
  pp.Arcs = false;
  pp.NoZeros = false;
  pp.RelCoords = true;
  pp.Hexa = true;
  pp.ScaleV = 0.0625f;
  pp.ScaleZ = -1000000;
  pp.FormatXY = {'0', 4, ',', 3};
  pp.FormatA = {'#', 3, '.', 0};
  pp.OriginXY = kOriginRedPoint;
  pp.OriginZ = 1;
  pp.OffsetA = -12.5f;
  ASSERT_TRUE(WritePostProcessor(pp, folder_, kPostProcessorBaseName));
  ASSERT_TRUE(fs::exists(dir_ / "Isolith.ppf"));

  TPostProcessor back;
  ASSERT_TRUE(ReadPostProcessor(back, folder_, kPostProcessorBaseName));
  EXPECT_EQ(PostProcessorFileText(back), PostProcessorFileText(pp));
  EXPECT_EQ(back.Trailer1, 0);
  EXPECT_EQ(back.IncNb, 0);
  EXPECT_EQ(back.BeginNb, 0);
  EXPECT_EQ(back.FileTop, pp.FileTop);
  EXPECT_TRUE(back.Hexa);
  EXPECT_FALSE(back.Arcs);
  EXPECT_FLOAT_EQ(back.ScaleV, 0.0625f);
  EXPECT_EQ(back.FormatXY.pad, '0');
  EXPECT_EQ(back.FormatXY.decimalChar, ',');
  EXPECT_EQ(back.FormatA.pad, '#');

  // With an empty name the folder argument is the whole path.
  ASSERT_TRUE(WritePostProcessor(TPostProcessor{}, (dir_ / "other.ppf").string(), ""));
  ASSERT_TRUE(ReadPostProcessor(back, (dir_ / "other.ppf").string(), ""));
  EXPECT_EQ(back.Title, "ISO standard");
  EXPECT_EQ(PostProcessorPath("/cfg/", "Isolith"), "/cfg/Isolith.ppf");
}

TEST_F(PostProcessorFile, DamagedFilesReadWithFallbacks) {
  TPostProcessor pp;
  // A missing file: false, nothing changed.
  pp.Title = "kept";
  EXPECT_FALSE(ReadPostProcessor(pp, folder_, "missing"));
  EXPECT_EQ(pp.Title, "kept");

  const std::string longValue(400, 'x');
  Put(dir_ / "bad.ppf",
      "garbage without equals\n"
      "[Another section]\n"
      "title=Lower-case key\r\n"
      "FileExt=toolong\n"
      "BeginNb=abc\n"  // no number: kept
      "EndNb=-5\n"     // held to the limits
      "IncNb=99999\n"
      "Header1=300\n"
      "ScaleX=1e300\n"
      "ScaleY=nan\n"
      "OffsetA=720\n"
      "Arcs=maybe\n"  // neither Yes nor No: kept
      "Hexa=yes\n"
      "OriginXY=42\n"
      "FormatZ=\n"
      "Unknown=1\n"
      "ToolChg=T<T>\x01\x02 M06=x\n"
      "FileTop=" +
          longValue +
          "\n"
          "ClearXYZ=" +
          longValue +
          "\n"
          "FileBottom=never read");  // a last line without its line feed does not count
  ASSERT_TRUE(ReadPostProcessor(pp, (dir_ / "bad.ppf").string(), ""));
  EXPECT_EQ(pp.Title, "Lower-case key");
  EXPECT_EQ(pp.FileExt, "toolo");
  EXPECT_EQ(pp.BeginNb, 2);
  EXPECT_EQ(pp.EndNb, 0);
  EXPECT_EQ(pp.IncNb, 10000);
  EXPECT_EQ(pp.Header1, 255);
  EXPECT_FLOAT_EQ(pp.ScaleX, 1000000);
  EXPECT_FLOAT_EQ(pp.ScaleY, 1);
  EXPECT_FLOAT_EQ(pp.OffsetA, 360);
  EXPECT_TRUE(pp.Arcs);
  EXPECT_TRUE(pp.Hexa);
  EXPECT_EQ(pp.OriginXY, kOriginRedPoint);
  EXPECT_EQ(pp.FormatZ.leftDigits, 1);
  EXPECT_EQ(pp.FormatZ.rightDigits, 0);
  EXPECT_EQ(pp.ToolChg, "T<T> M06=x");
  EXPECT_EQ(pp.FileTop, std::string(255, 'x'));  // a value keeps at most 255 characters
  EXPECT_EQ(pp.ClearXYZ, std::string(100, 'x'));
  EXPECT_EQ(pp.FileBottom, "M02");

  // Binary noise reads without harm.
  std::string noise;
  for (int i = 0; i < 20000; ++i) noise.push_back(static_cast<char>((i * 7919) % 256));
  Put(dir_ / "noise.ppf", noise);
  TPostProcessor other;
  EXPECT_TRUE(ReadPostProcessor(other, (dir_ / "noise.ppf").string(), ""));
  EXPECT_LE(other.Title.size(), kTitleWidth);
  EXPECT_LE(other.FileTop.size(), 255u);
}

TEST_F(PostProcessorFile, WritingReplacesOnlyWhenComplete) {
  TPostProcessor pp;
  pp.Title = "first";
  ASSERT_TRUE(WritePostProcessor(pp, folder_, "job"));
  // A read-only target is replaced all the same.
  fs::permissions(dir_ / "job.ppf", fs::perms::owner_read, fs::perm_options::replace);
  pp.Title = "second";
  ASSERT_TRUE(WritePostProcessor(pp, folder_, "job"));
  TPostProcessor back;
  ASSERT_TRUE(ReadPostProcessor(back, folder_, "job"));
  EXPECT_EQ(back.Title, "second");

  // A folder that does not exist: false, and nothing left behind.
  EXPECT_FALSE(WritePostProcessor(pp, folder_ + "nowhere/", "job"));
  int files = 0;
  for (const auto& entry : fs::directory_iterator(dir_)) {
    (void)entry;
    ++files;
  }
  EXPECT_EQ(files, 1);
}

}  // namespace
}  // namespace isolith
