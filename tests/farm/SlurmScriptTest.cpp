// The script that hands a shot to Slurm, with an engine of a few lines in Slurm's place: it notes what it is given and runs it at
// once. What the real one does is tried by scripts/farm-test.

#include "tests/cli/CommandProcess.h"
#include "tests/pictures/PngMaker.h"
#include "tests/support/TestFolder.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <sstream>

namespace kovalune::test {

namespace {

using Words = std::vector<std::string>;

constexpr char kSbatch[] = R"sh(#!/usr/bin/env bash
number=$(($(cat "$ENGINE/last" 2>/dev/null || echo 100) + 1))
echo $number >"$ENGINE/last"
printf '%s\0' "$@" >"$ENGINE/$number.words"
cat >"$ENGINE/$number.script"
[ ! -e "$ENGINE/refuses.$number" ] || exit 1
tasks=0
for word; do
    case $word in
    --array=*) tasks=${word#--array=1-} tasks=${tasks%%%*} ;;
    --nodelist=*) export SLURMD_NODENAME=${word#*=} ;;
    --output=*) log=${word#*=} ;;
    esac
done
log=${log//%%/%}
cd /
worst=0
for ((task = tasks > 0; task <= tasks; ++task)); do
    SLURM_ARRAY_TASK_ID=$task bash "$ENGINE/$number.script" >>"${log/\%j/$number}" 2>&1
    code=$?
    [ $code -le $worst ] || worst=$code
done
echo $worst >"$ENGINE/$number.code"
echo "$number;cluster"
)sh";

constexpr char kScontrol[] = R"sh(#!/usr/bin/env bash
[ ! -e "$ENGINE/down" ] || exit 1
if [ "$2" = config ]; then
    echo "MaxArraySize            = 51"
    exit
fi
if [ -e "$ENGINE/forgets" ]; then
    echo "slurm_load_jobs error: Invalid job id specified" >&2
    exit 1
fi
code=$(cat "$ENGINE/$3.code")
state=COMPLETED
[ $code -eq 0 ] || state=FAILED
[ ! -e "$ENGINE/cancels" ] || state=CANCELLED
echo "JobId=$3 JobState=$state Reason=None ExitCode=$code:0 RunTime=00:00:01"
)sh";

constexpr char kSinfo[] = "#!/usr/bin/env bash\nprintf 'n1\\nn2\\nn2\\nn3\\n'\n";

constexpr char kSqueue[] = R"sh(#!/usr/bin/env bash
[[ $* == *"-t all"* ]] || exit 0
for number in $(cd "$ENGINE" && ls *.code); do
    number=${number%.code}
    [ "$(cat "$ENGINE/$number.code")" -eq 0 ] && echo "$number COMPLETED" || echo "$number FAILED"
done
)sh";

constexpr char kScancel[] = "#!/usr/bin/env bash\necho \"$@\" >>\"$ENGINE/cancelled\"\n";

/// Notes its words, one call after the other; on the second node its pixels are others.
constexpr char kCommand[] = R"sh(#!/usr/bin/env bash
if [ "$1" = selfcheck ]; then
    [ "$SLURMD_NODENAME" != n2 ] || exit 4
    exit 0
fi
for word; do
    if [ "$word" = --list-frames ]; then
        printf 'frames 0001-0024\ncount 24\nmebibytes 17\ngiven%s\nfolder %s\n' "$GIVEN" "$ENGINE"
        exit
    fi
done
printf '%s\0' "$@" >>"$ENGINE/called"
printf '\n' >>"$ENGINE/called"
)sh";

class SlurmScript : public testing::Test {
protected:
    SlurmScript() {
        std::filesystem::create_directories(folder_ / "engine");
        std::filesystem::create_directories(folder_ / "tools");
        std::filesystem::create_directories(folder_ / "bin");
        put("tools/sbatch", kSbatch);
        put("tools/scontrol", kScontrol);
        put("tools/sinfo", kSinfo);
        put("tools/squeue", kSqueue);
        put("tools/scancel", kScancel);
        put("bin/kovalune", kCommand);
        std::filesystem::copy_file(KOVALUNE_SLURM, folder_ / "bin" / "kovalune-slurm");
    }

    void put(const std::string& name, const std::string& text) const {
        std::ofstream(folder_ / name) << text;
        std::filesystem::permissions(folder_ / name, std::filesystem::perms::owner_all);
    }

    /// The real one, and six small pictures.
    void takeRealCommand() const {
        std::filesystem::remove(folder_ / "bin/kovalune");
        std::filesystem::create_symlink(KOVALUNE_COMMAND, folder_ / "bin/kovalune");
        for (int frame = 1; frame <= 6; ++frame) {
            writePng(folder_ / ("cel.000" + std::to_string(frame) + ".png"),
                     randomPng(PngColor::kRgb, 8, 9, 7, static_cast<uint32_t>(frame)));
        }
    }

    CommandOutcome run(const Words& words, const std::string& given = {}) const {
        CommandSetting setting;
        setting.folder = folder_.path();
        setting.program = folder_ / "bin/kovalune-slurm";
        setting.environment = {{"PATH", (folder_ / "tools").string() + ':' + std::getenv("PATH")},
                               {"ENGINE", folder_ / "engine"},
                               {"GIVEN", given}};
        return runCommand(words, setting);
    }

    std::string textOf(const std::string& name) const {
        std::ostringstream text;
        text << std::ifstream(folder_ / name).rdbuf();
        return text.str();
    }

    /// What sbatch was given for the job.
    Words wordsOf(int job) const { return split(textOf("engine/" + std::to_string(job) + ".words"), '\0'); }
    bool wasGiven(int job, const std::string& word) const {
        const Words words = wordsOf(job);
        return std::find(words.begin(), words.end(), word) != words.end();
    }

    static Words split(const std::string& text, char end) {
        Words words;
        std::istringstream stream(text);
        for (std::string word; std::getline(stream, word, end);) {
            words.push_back(word);
        }
        return words;
    }

    /// The command's words in its call so and so; "\0\n" ends a call.
    Words call(std::size_t wanted) const {
        std::string text = textOf("engine/called");
        for (std::size_t n = 0; n < wanted; ++n) {
            const std::size_t end = text.find(std::string("\0\n", 2));
            EXPECT_NE(end, std::string::npos);
            text.erase(0, end + 2);
        }
        return split(text.substr(0, text.find(std::string("\0\n", 2))), '\0');
    }

    void expectRefused(const Words& words, int code, const std::string& part) const {
        const CommandOutcome outcome = run(words);
        EXPECT_EQ(outcome.exitCode, code) << outcome.err;
        EXPECT_EQ(outcome.out, "");
        EXPECT_EQ(std::count(outcome.err.begin(), outcome.err.end(), '\n'), 1) << outcome.err;
        EXPECT_NE(outcome.err.find(part), std::string::npos) << outcome.err;
        EXPECT_FALSE(std::filesystem::exists(folder_ / "engine/called"));
    }

    const TestFolder folder_;
};

TEST_F(SlurmScript, HandsEachWordOnAsItIs) {
    const Words odd = {"cel.####.png",  "-o",        "out of\nit/s.%04d.png",
                       "it's",          "\"$HOME\"", "`ls` \\",
                       "\xC3\xA4\xFF!", "",          "*",
                       "--set=A=1",     "\t\r",      "~",
                       "trailing\n",    "-n;"};
    Words words = {"--parts", "2", "--"};
    words.insert(words.end(), odd.begin(), odd.end());
    const CommandOutcome outcome = run(words);
    ASSERT_EQ(outcome.exitCode, 0) << outcome.err;
    for (const std::size_t part : {0U, 1U}) {
        Words expected = {"render", "--newer", "--frames=0001-0024", "--part",
                          std::to_string(part + 1) + "/2"};
        expected.insert(expected.end(), odd.begin(), odd.end());
        EXPECT_EQ(call(part), expected);
    }
    Words expected = {"render", "--newer", "--frames=0001-0024", "--sweep", "--list-missing"};
    expected.insert(expected.end(), odd.begin(), odd.end());
    EXPECT_EQ(call(2), expected);
}

TEST_F(SlurmScript, SubmitsAnArrayAndACheckAfterIt) {
    const CommandOutcome outcome =
        run({"--parts=6", "--at-once", "2", "--sbatch", "--partition=night", "--logs", "my logs 50%",
             "--sbatch=--mem=1G", "--", "cel.####.png", "-o", "s.####.png"});
    ASSERT_EQ(outcome.exitCode, 0) << outcome.err;
    EXPECT_EQ(outcome.out.substr(0, outcome.out.find(", logs")), "101 renders 24 frames in 6 parts");
    EXPECT_NE(outcome.out.find("\n102 sweeps and checks after it\n"), std::string::npos) << outcome.out;
    for (const int job : {101, 102}) {
        EXPECT_TRUE(wasGiven(job, "--parsable"));
        EXPECT_TRUE(wasGiven(job, "--requeue"));
        EXPECT_TRUE(wasGiven(job, "--partition=night"));
        // What is given counts over what is worked out.
        const Words words = wordsOf(job);
        const auto memory = std::find(words.begin(), words.end(), "--mem=21M");
        EXPECT_NE(std::find(memory, words.end(), "--mem=1G"), words.end());
    }
    EXPECT_TRUE(wasGiven(101, "--array=1-6%2"));
    EXPECT_TRUE(wasGiven(101, "--output=" + (folder_ / "my logs 50%%/%A.%a.log").string()));
    EXPECT_TRUE(wasGiven(102, "--dependency=afterany:101"));
    EXPECT_TRUE(std::filesystem::exists(folder_ / "my logs 50%"));
}

TEST_F(SlurmScript, AddsWhatIsNotGiven) {
    ASSERT_EQ(run({"--parts", "1", "--", "x"}, " frames existing").exitCode, 0);
    EXPECT_EQ(call(0), (Words{"render", "--part", "1/1", "x"}));
    ASSERT_EQ(run({"--", "x"}, " existing").exitCode, 0);
    EXPECT_TRUE(wasGiven(103, "--array=1-12")) << "four for each of three nodes";
    EXPECT_TRUE(std::filesystem::exists(folder_ / "engine/kovalune-logs")) << "beside the outputs";
}

TEST_F(SlurmScript, RefusesWhatCannotBe) {
    expectRefused({}, 2, "-- is missing");
    expectRefused({"cel.####.png"}, 2, "there is no option cel.####.png");
    expectRefused({"--parts"}, 2, "--parts: a value is missing");
    expectRefused({"--parts", "0", "--", "x"}, 2, "--parts takes a whole number");
    expectRefused({"--at-once", "2x", "--", "x"}, 2, "--at-once takes a whole number");
    expectRefused({"--logs", "", "--", "x"}, 2, "--logs: a folder is missing");
    expectRefused(
        {"--parts", "51", "--", "x"}, 2,
        "--parts 51 is too many: the controller's MaxArraySize is 51, which is 50 parts at the most");
    put("file", "");
    expectRefused({"--logs", "file/logs", "--", "x"}, 3, "cannot make the folder");
    expectRefused({"--logs", "a\\b", "--", "x"}, 3, "no folder with a backslash");
    put("engine/down", "");
    expectRefused({"--", "x"}, 3, "no controller of Slurm answers");
    std::filesystem::remove(folder_ / "engine/down");
    std::filesystem::remove(folder_ / "tools/scancel");
    std::filesystem::remove(folder_ / "bin/kovalune");
    expectRefused({"--", "x"}, 3, "there is no command");
}

TEST_F(SlurmScript, LeavesNoArrayWithoutACheck) {
    put("engine/refuses.102", "");
    const CommandOutcome outcome = run({"--parts", "2", "--", "x"});
    EXPECT_EQ(outcome.exitCode, 3);
    EXPECT_NE(outcome.err.find("so the parts are cancelled"), std::string::npos) << outcome.err;
    EXPECT_EQ(textOf("engine/cancelled"), "101\n");
}

TEST_F(SlurmScript, ExcludesNodesThatMakeOtherPixels) {
    const CommandOutcome outcome =
        run({"--selfcheck", "--parts", "2", "--sbatch", "--exclude=n8", "--sbatch", "-xn9", "--", "x"});
    ASSERT_EQ(outcome.exitCode, 0) << outcome.err;
    EXPECT_NE(outcome.err.find("node n2 makes other pixels, and is excluded"), std::string::npos)
        << outcome.err;
    for (const int job : {101, 102, 103}) {
        EXPECT_TRUE(wasGiven(job, "--nodelist=n" + std::to_string(job - 100)));
    }
    EXPECT_TRUE(wasGiven(104, "--exclude=n8,n9,n2"));
    EXPECT_FALSE(wasGiven(104, "--exclude=n8"));
    // A node that nobody asked is asked by the part, which ends before it reads a frame.
    CommandSetting setting;
    setting.program = "/bin/bash";
    setting.environment = {
        {"SLURM_ARRAY_TASK_ID", "1"}, {"SLURMD_NODENAME", "n2"}, {"ENGINE", folder_ / "engine"}};
    std::filesystem::remove(folder_ / "engine/called");
    EXPECT_EQ(runCommand({folder_ / "engine/104.script"}, setting).exitCode, 4);
    EXPECT_FALSE(std::filesystem::exists(folder_ / "engine/called"));
    setting.environment["SLURMD_NODENAME"] = "n3";
    EXPECT_EQ(runCommand({folder_ / "engine/104.script"}, setting).exitCode, 0);
    EXPECT_EQ(call(0)[0], "render");
}

TEST_F(SlurmScript, RendersAShotAndEndsWithTheChecksCode) {
    takeRealCommand();
    const Words words = {"--wait", "--parts", "4",  "--",           "cel.####.png", "--frames",
                         "1-6",    "--mkdir", "-o", "s/s.####.png", "--factory"};
    CommandOutcome outcome = run(words);
    EXPECT_EQ(outcome.exitCode, 0) << outcome.out << outcome.err;
    for (int frame = 1; frame <= 6; ++frame) {
        EXPECT_TRUE(std::filesystem::exists(folder_ / ("s/s.000" + std::to_string(frame) + ".png")));
    }
    std::filesystem::remove(folder_ / "cel.0002.png");
    std::filesystem::remove(folder_ / "s/s.0002.png");
    outcome = run(words);
    EXPECT_EQ(outcome.exitCode, 1) << outcome.err;
    EXPECT_NE(outcome.out.find("\n0002\n"), std::string::npos) << outcome.out;
    // Of a check that the engine has forgotten the files tell.
    put("engine/forgets", "");
    EXPECT_EQ(run(words).exitCode, 1);
    std::filesystem::remove(folder_ / "engine/forgets");
    put("engine/cancels", "");
    EXPECT_EQ(run(words).exitCode, 143);
    // What the command says of its own words stands.
    outcome = run({"--", "cel.####.png", "-o", "s/s.####.png", "--strict"});
    EXPECT_EQ(outcome.exitCode, 2);
    EXPECT_NE(outcome.err.find("--list-frames"), std::string::npos) << outcome.err;
}

} // namespace

} // namespace kovalune::test
