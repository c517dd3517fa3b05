// command_line_test.cpp - the band and thread options in their orders,
// the silently ignored band forms, the refused thread counts, and "-nomark"
// anywhere among them.
#include "driver/command_line.h"

#include <gtest/gtest.h>

#include <tuple>
#include <vector>

namespace sciray {
namespace {

// The options after "sciray in.ren out.rgb"; threads -1 when refused.
run_options parse(std::vector<const char*> args) {
  args.insert(args.begin(), {"sciray", "in.ren", "out.rgb"});
  run_options o;
  if (!parse_run_options(static_cast<int>(args.size()), args.data(), o)) o.threads = -1;
  return o;
}

TEST(run_options, band_forms) {
  EXPECT_EQ(parse({"-band", "2/5"}).band.index, 2);
  EXPECT_EQ(parse({"-band", "2/5"}).band.count, 5);
  EXPECT_EQ(parse({"-band", "3/3", "extra"}).band.index, 3);
  for (const char* bad : {"0/3", "4/3", "x", "2", "-1/3", "1/0", "/3"}) {
    const band_choice b = parse({"-band", bad}).band;
    EXPECT_EQ(b.index, 1) << bad;
    EXPECT_EQ(b.count, 1) << bad;
  }
  EXPECT_EQ(parse({"-band"}).band.count, 1);          // the fourth argument is missing
  EXPECT_EQ(parse({"-bands", "2/5"}).band.count, 1);  // not the exact word
  EXPECT_EQ(parse({"band", "2/5"}).band.count, 1);
}

TEST(run_options, threads_before_or_after_the_band_and_refused_counts) {
  EXPECT_EQ(parse({}).threads, 0);  // every processor
  EXPECT_EQ(parse({"-threads", "3"}).threads, 3);
  const run_options after = parse({"-band", "2/5", "-threads", "4"});
  EXPECT_EQ(std::make_pair(after.band.index, after.threads), std::make_pair(2, 4));
  const run_options before = parse({"-threads", "4", "-band", "2/5"});
  EXPECT_EQ(std::make_pair(before.band.index, before.threads), std::make_pair(2, 4));
  // A bad band beside good threads is still silently the whole picture.
  EXPECT_EQ(parse({"-threads", "2", "-band", "9/5"}).band.count, 1);
  EXPECT_EQ(parse({"-threads", "99999999999999"}).threads, 1000000);
  // Elsewhere, "-threads" is one of the ignored arguments.
  EXPECT_EQ(parse({"-band", "2/5", "x", "-threads", "0"}).threads, 0);
  for (const std::vector<const char*>& bad : {std::vector<const char*>{"-threads"}, {"-threads", "0"}, {"-threads", "-2"},
                                             {"-threads", "two"}, {"-threads", "2x"}, {"-threads", ""},
                                             {"-band", "1/2", "-threads", "0"}})
    EXPECT_EQ(parse(bad).threads, -1) << bad.back();
}

TEST(run_options, nomark_anywhere_after_the_file_names_leaves_the_others_in_place) {
  EXPECT_TRUE(parse({}).mark);
  EXPECT_TRUE(parse({"-band", "2/5", "-threads", "3", "nomark", "-no-mark"}).mark);
  for (const std::vector<const char*>& args :
       {std::vector<const char*>{"-nomark"}, {"-nomark", "-band", "2/5", "-threads", "3"},
        {"-band", "-nomark", "2/5", "-threads", "3"}, {"-band", "2/5", "-nomark", "-threads", "3", "-nomark"},
        {"-threads", "3", "-nomark", "-band", "2/5"}}) {
    const run_options o = parse(args);
    EXPECT_FALSE(o.mark);
    if (args.size() > 1) {
      EXPECT_EQ(std::make_tuple(o.band.index, o.band.count, o.threads), std::make_tuple(2, 5, 3));
    }
  }
  // The file names are never options, whatever they are called.
  std::vector<const char*> named{"sciray", "-nomark", "-nomark"};
  run_options o;
  ASSERT_TRUE(parse_run_options(3, named.data(), o));
  EXPECT_TRUE(o.mark);
  // A "-nomark" is no thread count.
  EXPECT_EQ(parse({"-threads", "-nomark", "3"}).threads, 3);
  EXPECT_EQ(parse({"-nomark", "-threads"}).threads, -1);
}

}  // namespace
}  // namespace sciray
