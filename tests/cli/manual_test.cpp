// Help, manual pages and completions, all made from the tables of commands.
#include "cli/manual.h"

#include "cli/commands.h"
#include "cli/completion.h"
#include "cli/help.h"
#include "tests/cli/command.h"
#include "tests/support/temporary_folder.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>

namespace velmoranth::cli::manual_test {
namespace {

using tests::TemporaryFolder;

constexpr Option kFruit[]{{"--fruit", "-f", "NAME", "a .dot, a \\ and 'quotes': [x]"},
                          {"--many", "", "N", "more", Repeat::often},
                          {"--quiet", "", "", "say nothing"}};

Command sampleCommand(std::string_view name) {
    return {.name = name,
            .summary = "Eat a thing.",
            .positionalNames = "THING...",
            .description = "First line\n.second line",
            .options = kFruit,
            .examples = {"velmoranth eat -f apple", "velmoranth eat 'it''s'"},
            .leastPositionals = 0,
            .mostPositionals = 1,
            .run = [](const Arguments& /*arguments*/) { return ExitCode::done; },
            .moreHelp = [] { return std::string("kinds:\n  a-b\n\nexit codes:\n  0 eaten\n"); }};
}

// The output of a shell for a script given as a file.
std::string outputOf(const std::string& shell, const std::string& script) {
    const TemporaryFolder folder;
    folder.file("script", script);
    const CommandResult result = runCommand(
        {folder / "script"}, {.folder = folder.path(), .variables = {}, .program = shell});
    return result.output + result.errors;
}

TEST(Help, EveryCommandHasTwoExamplesOfItself) {
    for (const Command& command : commands()) {
        EXPECT_GE(command.examples.size(), 2U) << command.name;
        for (const std::string_view example : command.examples) {
            EXPECT_NE(example.find(command.name == "device init" ? "mydevice"
                                                                 : std::string(command.name)),
                      std::string_view::npos)
                << example;
        }
    }
}

TEST(Help, HelpOfACommandIsTheSameByBothWords) {
    for (const Command& command : commands()) {
        const std::string name(command.name);
        const std::size_t blank = name.find(' ');
        std::vector<std::string> words{name.substr(0, blank)};
        if (blank != std::string::npos) {
            words.push_back(name.substr(blank + 1));
        }
        std::vector<std::string> before = words;
        before.insert(before.begin(), "help");
        words.emplace_back("--help");
        const CommandResult help = runCommand(before);
        EXPECT_EQ(help.code, 0) << name;
        EXPECT_EQ(help.output, commandHelp(command));
        EXPECT_EQ(runCommand(words).output, help.output);
    }
    EXPECT_EQ(runCommand({"help", "settings"}).output, runCommand({"settings", "--help"}).output);
    EXPECT_EQ(runCommand({"help"}).output, programHelp(commands()));
    EXPECT_EQ(runCommand({"help", "prevew"}).errors,
              "velmoranth: error: there is no command \"prevew\"; did you mean preview?\n");
    EXPECT_EQ(runCommand({"help", "preview", "x"}).code, 2);
}

TEST(Colors, AreAskedForOrNot) {
    const std::string red = "velmoranth: \033[1;31merror:\033[0m ";
    const std::string plain = "velmoranth: error: ";
    EXPECT_EQ(runCommand({"pack", "/none"}).errors.find(plain), 0U);
    EXPECT_EQ(runCommand({"pack", "/none", "--color", "auto"}).errors.find(plain), 0U);
    EXPECT_EQ(runCommand({"pack", "/none", "--color", "never"}).errors.find(plain), 0U);
    EXPECT_EQ(runCommand({"pack", "/none", "--color=always"},
                         {.folder = ".", .variables = {{"NO_COLOR", "1"}}})
                  .errors.find(red),
              0U);
    EXPECT_EQ(runCommand({"hooks"}).output.find('\033'), std::string::npos);
    EXPECT_NE(runCommand({"hooks", "--color", "always"}).output.find('\033'), std::string::npos);
    EXPECT_EQ(runCommand({"hooks", "--color", "red"}).errors,
              "velmoranth: error: --color takes auto, always or never, not \"red\"\n");
    EXPECT_EQ(runCommand({"hooks", "--color", "never", "--color", "auto"}).errors,
              "velmoranth: error: --color is given more than once\n");
    EXPECT_EQ(runCommand({"hooks", "--colour", "never"}).errors,
              "velmoranth: error: velmoranth hooks has no option \"--colour\"; did you mean "
              "--color?\n");
}

TEST(Manual, ACommandsPageHasAllThatItsHelpHas) {
    const std::string version = runCommand({"--version"}).output;  // "velmoranth 1.2.3\n"
    EXPECT_EQ(
        commandManual(sampleCommand("eat out")),
        ".TH \"velmoranth\\-eat\\-out\" 1 \"\" \"" + version.substr(0, version.find('\n')) +
            "\"\n"
            ".SH NAME\nvelmoranth\\-eat\\-out \\- eat a thing\n"
            ".SH SYNOPSIS\n.B velmoranth eat out\n\\fITHING...\\fR\n[\\fIOPTION\\fR...]\n"
            ".SH DESCRIPTION\nEat a thing.\n.PP\nFirst line\n\\&.second line\n"
            ".SH OPTIONS\n.TP\n\\fB\\-f\\fR, \\fB\\-\\-fruit\\fR \\fINAME\\fR\n"
            "a .dot, a \\e and 'quotes': [x]\n"
            ".TP\n\\fB\\-\\-many\\fR \\fIN\\fR\nmore\n.TP\n\\fB\\-\\-quiet\\fR\nsay nothing\n"
            ".TP\n\\fB\\-\\-color\\fR \\fIWHEN\\fR\nauto (on a terminal, unless NO_COLOR is set), "
            "always or never (default auto)\n"
            ".TP\n\\fB\\-h\\fR, \\fB\\-\\-help\\fR\nshow this text\n"
            ".SH KINDS\n.nf\n  a\\-b\n.fi\n.SH EXIT CODES\n.nf\n  0 eaten\n.fi\n"
            ".SH EXAMPLES\n.nf\nvelmoranth eat \\-f apple\n.fi\n.nf\nvelmoranth eat 'it''s'\n.fi\n"
            ".SH SEE ALSO\n\\fBvelmoranth\\fR(1)\n");
}

TEST(Manual, EveryPageIsPrinted) {
    const std::string program = runCommand({"man"}).output;
    EXPECT_EQ(program, programManual(commands()));
    for (const Command& command : commands()) {
        std::string page = "velmoranth-" + std::string(command.name);
        std::ranges::replace(page, ' ', '-');
        std::string name;
        for (const char letter : page) {
            name += letter == '-' ? std::string("\\-") : std::string(1, letter);
        }
        EXPECT_NE(program.find("\\fB" + name + "\\fR(1)\n"), std::string::npos) << page;
    }
    EXPECT_EQ(runCommand({"man", "device", "init"}).output,
              commandManual(*std::ranges::find(commands(), "device init", &Command::name)));
    EXPECT_EQ(runCommand({"man", "prevew"}).errors,
              "velmoranth: error: there is no command \"prevew\"; did you mean preview?\n");
}

TEST(Manual, NoPageMakesTheTypesetterComplain) {
    if (::access("/usr/bin/groff", X_OK) != 0) {
        GTEST_SKIP() << "groff is not installed";
    }
    const TemporaryFolder folder;
    std::vector<std::string> pages{programManual(commands()), commandManual(sampleCommand("eat"))};
    for (const Command& command : commands()) {
        pages.push_back(commandManual(command));
    }
    for (const std::string& page : pages) {
        folder.file("page", page);
        const CommandResult set =
            runCommand({"-man", "-ww", "-K", "utf8", "-T", "utf8", "page"},
                       {.folder = folder.path(), .variables = {}, .program = "/usr/bin/groff"});
        EXPECT_EQ(set.code, 0);
        EXPECT_EQ(set.errors, "") << page.substr(0, 60);
    }
}

TEST(Completion, BashCompletesCommandsAndTheirOptions) {
    const std::string script = runCommand({"completion", "bash"}).output;
    const auto completed = [&](const std::string& words, int index) {
        return outputOf("/bin/bash", script + "COMP_WORDS=(velmoranth " + words +
                                         ")\nCOMP_CWORD=" + std::to_string(index) +
                                         "\n_velmoranth\necho \"${COMPREPLY[*]}\"\n");
    };
    EXPECT_EQ(completed("pr", 1), "preview\n");
    EXPECT_EQ(completed("settings re", 2), "rename restore\n");
    EXPECT_EQ(completed("device ''", 2).find("init"), 0U);
    EXPECT_EQ(completed("help pa", 2), "pack\n");
    EXPECT_EQ(completed("pack --ver", 2), "--version\n");
    EXPECT_EQ(completed("pack Theme --f", 3), "--field --force\n");
    EXPECT_EQ(completed("settings set --ro", 3), "--root\n");
    EXPECT_EQ(completed("hooks --col", 2), "--color\n");
    EXPECT_EQ(completed("preview scri", 2), "script\n");  // a file of the folder
}

TEST(Completion, TheOtherShellsKnowEveryWordToo) {
    const std::string zsh = runCommand({"completion", "zsh"}).output;
    const std::string fish = runCommand({"completion", "fish"}).output;
    EXPECT_EQ(zsh.find("#compdef velmoranth\n"), 0U);
    for (const Command& command : commands()) {
        EXPECT_NE(zsh.find("        '" + std::string(command.name) + "') _arguments"),
                  std::string::npos)
            << command.name;
        for (const Option& option : command.options) {
            EXPECT_NE(zsh.find(std::string(option.name) + "["), std::string::npos) << option.name;
            EXPECT_NE(fish.find(" -l " + std::string(option.name.substr(2)) + " "),
                      std::string::npos)
                << option.name;
        }
    }
    const std::vector<Command> sample{sampleCommand("eat"), sampleCommand("drink up")};
    EXPECT_EQ(
        shells()[2].script(sample).find(
            "# fish completion for velmoranth\n"
            "complete -c velmoranth -f -n '__fish_use_subcommand' -a 'eat' -d 'Eat a thing.'\n"
            "complete -c velmoranth -n '__fish_seen_subcommand_from eat' -s f -l fruit -r -d "
            "'a .dot, a \\ and '\\''quotes'\\'': [x]'\n"
            "complete -c velmoranth -n '__fish_seen_subcommand_from eat' -l many -r -d 'more'\n"
            "complete -c velmoranth -n '__fish_seen_subcommand_from eat' -l quiet -d 's"),
        0U);
    EXPECT_NE(shells()[1].script(sample).find(
                  "'eat') _arguments '-f[a .dot, a \\\\ and '\\''quotes'\\''\\: "
                  "\\[x\\]]:NAME:_files' '--fruit["),
              std::string::npos);
    EXPECT_NE(shells()[1].script(sample).find("'*--many[more]:N:_files'"), std::string::npos);
    EXPECT_EQ(runCommand({"completion", "fsh"}).errors,
              "velmoranth: error: completion takes bash, zsh or fish, not \"fsh\"; did you mean "
              "zsh?\n");
}

}  // namespace
}  // namespace velmoranth::cli::manual_test
