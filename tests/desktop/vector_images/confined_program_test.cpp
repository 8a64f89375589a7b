#include "desktop/vector_images/confined_program.h"

#include "tests/support/sanitizers.h"
#include "tests/support/temporary_folder.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <linux/landlock.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cstdlib>
#include <string>
#include <vector>

namespace velmoranth::desktop::vector_images::confined_program_test {
namespace {

using namespace std::chrono_literals;

std::string textOf(const ProgramResult& result) {
    return {result.output.begin(), result.output.end()};
}

// What the shell says that is not its own program's refusal: of its built-in commands alone, since
// it starts no other.
std::string outputOfScript(const std::string& script, const ProgramLimits& limits = {}) {
    const ProgramResult result = runConfined("/bin/bash", {"--norc", "-c", script}, {}, limits);
    EXPECT_EQ(result.ending, ProgramEnding::exited) << result.complaints;
    return textOf(result);
}

TEST(ConfinedProgram, InputGoesInAndOutputComesOut) {
    std::vector<std::uint8_t> input(3'000'000);
    for (std::size_t index = 0; index < input.size(); ++index) {
        input[index] = static_cast<std::uint8_t>(index * 7 + index / 251);
    }
    const ProgramResult result = runConfined("/bin/cat", {}, input, {.maxOutput = input.size()});
    EXPECT_EQ(result.ending, ProgramEnding::exited);
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.output, input);
    EXPECT_EQ(result.complaints, "");
}

TEST(ConfinedProgram, InputNeedNotBeRead) {
    const std::vector<std::uint8_t> input(3'000'000, 'x');
    const ProgramResult result = runConfined("/bin/bash", {"--norc", "-c", "echo done"}, input, {});
    EXPECT_EQ(result.ending, ProgramEnding::exited);
    EXPECT_EQ(textOf(result), "done\n");
}

TEST(ConfinedProgram, ExitCodeAndComplaintsAreTold) {
    const ProgramResult result =
        runConfined("/bin/bash", {"--norc", "-c", "echo why >&2; exit 7"}, {}, {});
    EXPECT_EQ(result.ending, ProgramEnding::exited);
    EXPECT_EQ(result.exitCode, 7);
    EXPECT_EQ(result.complaints, "why\n");
    EXPECT_EQ(result.output.size(), 0U);
}

TEST(ConfinedProgram, ComplaintsWithoutEndAreCutOff) {
    const ProgramResult result = runConfined(
        "/bin/bash",
        {"--norc", "-c", "for ((i = 0; i < 100000; ++i)); do echo 123456789 >&2; done"}, {}, {});
    EXPECT_EQ(result.ending, ProgramEnding::exited);
    EXPECT_EQ(result.complaints.size(), 4096U);
}

TEST(ConfinedProgram, OutputBeyondTheLimitStopsIt) {
    EXPECT_EQ(runConfined("/usr/bin/yes", {}, {}, {.maxOutput = 100'000}).ending,
              ProgramEnding::tooMuchOutput);
    const std::vector<std::uint8_t> input(1000, 'x');
    EXPECT_EQ(runConfined("/bin/cat", {}, input, {.maxOutput = 1000}).ending,
              ProgramEnding::exited);
    EXPECT_EQ(runConfined("/bin/cat", {}, input, {.maxOutput = 999}).ending,
              ProgramEnding::tooMuchOutput);
}

TEST(ConfinedProgram, TimeIsLimited) {
    EXPECT_EQ(runConfined("/bin/sleep", {"600"}, {}, {.maxTime = 100ms}).ending,
              ProgramEnding::timeUp);
}

TEST(ConfinedProgram, MemoryIsLimited) {
    const std::vector<std::string> doubling{
        "BEGIN { x = \"x\"; while (length(x) < 2 ^ 28) x = x x; "
        "print \"there is enough\" }"};
    const ProgramResult little =
        runConfined("/usr/bin/awk", doubling, {}, {.maxMemory = std::size_t{128} << 20U});
    EXPECT_EQ(textOf(little), "");
    EXPECT_TRUE(little.ending == ProgramEnding::killed || little.exitCode != 0);
    EXPECT_EQ(textOf(runConfined("/usr/bin/awk", doubling, {},
                                 {.maxMemory = std::size_t{2048} << 20U, .maxTime = 100s})),
              "there is enough\n");
}

TEST(ConfinedProgram, ProgramThatIsNoneIsNotStarted) {
    const tests::TemporaryFolder folder;
    folder.file("rubbish",
                "\x7F"
                "ELF and no more");
    chmod((folder / "rubbish").c_str(), 0755);
    EXPECT_EQ(runConfined(folder / "rubbish", {}, {}, {}).ending, ProgramEnding::notStarted);
    EXPECT_EQ(runConfined(folder / "nothing", {}, {}, {}).ending, ProgramEnding::notStarted);
}

TEST(ConfinedProgram, HasNoEnvironmentAndNoFilesOpen) {
    setenv("VELMORANTH_SECRET", "secret", 1);
    ASSERT_EQ(dup2(STDOUT_FILENO, 50), 50);
    EXPECT_EQ(outputOfScript("echo \"$VELMORANTH_SECRET,$HOME,$LC_ALL\"; "
                             "if : >&50; then echo open; fi"),
              ",,C\n");
    close(50);
}

TEST(ConfinedProgram, ChangesNoFile) {
    const tests::TemporaryFolder folder;
    folder.file("there", "before");
    const std::string to = folder.path();
    EXPECT_EQ(outputOfScript("echo x >" + to + "/new && echo written; " +            //
                             "echo x >" + to + "/there && echo written; " +          //
                             "echo x >>" + to + "/there && echo appended; " +        //
                             "echo x <>" + to + "/there && echo opened; echo end"),  //
              "end\n");
    for (const std::vector<std::string>& words :
         {std::vector<std::string>{"/bin/rm", to + "/there"},
          {"/bin/mv", to + "/there", to + "/gone"},
          {"/bin/ln", to + "/there", to + "/second"},
          {"/bin/ln", "-s", to + "/there", to + "/second"},
          {"/bin/mkdir", to + "/second"},
          {"/usr/bin/mkfifo", to + "/second"},
          {"/bin/chmod", "0600", to + "/there"},
          {"/usr/bin/truncate", "--size=0", to + "/there"},
          {"/bin/touch", to + "/there"}}) {
        const ProgramResult result =
            runConfined(words.front(), {words.begin() + 1, words.end()}, {}, {});
        EXPECT_EQ(result.ending, ProgramEnding::exited) << words.front();
        EXPECT_EQ(result.exitCode, 1) << words.front();
    }
    EXPECT_EQ(folder.names("."), "there");
    EXPECT_EQ(folder.contents("there"), "before");
    EXPECT_EQ(folder.mode("there"), 0644U);
}

TEST(ConfinedProgram, ReadsWhatIsTheSystemsAndItsOwnFolder) {
    if (syscall(SYS_landlock_create_ruleset, nullptr, 0, LANDLOCK_CREATE_RULESET_VERSION) < 1) {
        GTEST_SKIP() << "this kernel has no Landlock";
    }
    const tests::TemporaryFolder folder;
    folder.file("secret", "secret");
    const std::string asking = "read line <\"" + (folder / "secret") + "\" || true; echo \"$line\"";
    EXPECT_EQ(outputOfScript(asking), "\n");
    EXPECT_EQ(outputOfScript("read line </etc/debian_version && echo read"), "read\n");
    folder.file("asking", "#!/bin/bash --norc\n" + asking);
    chmod((folder / "asking").c_str(), 0755);
    EXPECT_EQ(textOf(runConfined(folder / "asking", {}, {}, {})), "secret\n");
}

TEST(ConfinedProgram, HasNoNetwork) {
    const ProgramResult result = runConfined(
        "/bin/bash", {"--norc", "-c", "exec 3<>/dev/udp/127.0.0.1/9 && echo connected"}, {}, {});
    EXPECT_EQ(textOf(result), "");
    EXPECT_NE(result.complaints.find("Operation not permitted"), std::string::npos)
        << result.complaints;
}

TEST(ConfinedProgram, StartsAndStopsNoOther) {
    EXPECT_EQ(outputOfScript("kill -0 $PPID && echo stopped; kill -0 $$ && echo stopped; echo end"),
              "end\n");
    const ProgramResult result = runConfined(
        "/bin/bash", {"--norc", "-c", "/bin/echo started; (echo forked)"}, {}, {.maxTime = 100s});
    EXPECT_EQ(textOf(result), "");
}

TEST(ConfinedProgram, IsLookedForInTheFoldersOfPath) {
    const tests::TemporaryFolder folder;
    folder.file("first/other");
    folder.file("first/plain");
    folder.file("second/plain");
    chmod((folder / "second/plain").c_str(), 0755);
    const auto found = [](const std::string& path) {
        setenv("PATH", path.c_str(), 1);
        return findProgram("plain").value_or("none");
    };
    // The first that may be run; a file that may not is none.
    if (geteuid() != 0 || access((folder / "first/plain").c_str(), X_OK) != 0) {
        EXPECT_EQ(found(folder / "first" + ":" + folder / "second"), folder / "second/plain");
    }
    EXPECT_EQ(found(folder / "none" + "::" + folder / "second"), folder / "second/plain");
    EXPECT_EQ(found(folder / "none"), "none");
    EXPECT_EQ(found(""), "none");
    // Where one happens to be is no place for programs.
    ASSERT_EQ(chdir((folder / "second").c_str()), 0);
    EXPECT_EQ(found(":."), "none");
    unsetenv("PATH");
    EXPECT_EQ(findProgram("env"), "/usr/bin/env");
}

}  // namespace
}  // namespace velmoranth::desktop::vector_images::confined_program_test
