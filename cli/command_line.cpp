#include "cli/command_line.h"

#include <CLI/CLI.hpp>

#include "core/bundle.h"
#include "core/localization.h"
#include "core/unicode.h"

#include "cli/connect_command.h"
#include "cli/list_command.h"
#include "cli/note_command.h"
#include "cli/output.h"
#include "cli/restore_command.h"
#include "cli/row_command.h"
#include "cli/terminals_command.h"
#include "cli/text_layout.h"
#include "cli/watch_command.h"

namespace zelvane::cli {
namespace {

void speakKorean(CLI::App& app) {
  app.set_help_flag("-h,--help", L("도움말을 보여요"))->group(L("옵션"));
  app.option_defaults()->group(L("옵션"));
  const auto formatter = app.get_formatter();
  formatter->label("Usage", L("사용법"));
  formatter->label("OPTIONS", L("옵션"));
  formatter->label("SUBCOMMAND", L("명령"));
}

/// Adds a subcommand whose only option is --json.
void addListing(CLI::App& app, const std::string& name, const std::string& description,
                const std::string& jsonDescription, ExitCode (*subcommand)(Format),
                CommandLine& chosen) {
  CLI::App* command = app.add_subcommand(name, description)->group(L("명령"));
  command->get_help_ptr()->group(L("옵션"));
  const CLI::Option* json = command->add_flag("--json", jsonDescription)->disable_flag_override();
  command->callback([=, &chosen] {
    const auto format = json->count() > 0 ? Format::json : Format::text;
    chosen.subcommand = [=] { return subcommand(format); };
  });
}

/// Adds a subcommand without options.
void addPlain(CLI::App& app, const std::string& name, const std::string& description,
              ExitCode (*subcommand)(), CommandLine& chosen) {
  CLI::App* command = app.add_subcommand(name, description)->group(L("명령"));
  command->get_help_ptr()->group(L("옵션"));
  command->callback([=, &chosen] { chosen.subcommand = subcommand; });
}

/// Adds a subcommand that takes a row.
void addRow(CLI::App& app, const std::string& name, const std::string& description,
            ExitCode (*subcommand)(const std::string&), CommandLine& chosen) {
  CLI::App* command = app.add_subcommand(name, description)->group(L("명령"));
  command->get_help_ptr()->group(L("옵션"));
  command->option_defaults()->group(L("값"));
  const auto row = std::make_shared<std::string>();
  command->add_option("ROW", *row, L("목록의 번호나 대화 번호의 앞부분"))->required();
  command->callback([=, &chosen] { chosen.subcommand = [=] { return subcommand(*row); }; });
}

/// Adds a subcommand that takes a row and, to change the note, a text.
void addNote(CLI::App& app, const std::string& name, const std::string& description, Note note,
             CommandLine& chosen) {
  CLI::App* command = app.add_subcommand(name, description)->group(L("명령"));
  command->get_help_ptr()->group(L("옵션"));
  command->option_defaults()->group(L("값"));
  const auto row = std::make_shared<std::string>();
  const auto text = std::make_shared<std::string>();
  command->add_option("ROW", *row, L("목록의 번호나 대화 번호의 앞부분"))->required();
  const CLI::Option* given = command->add_option(
      "TEXT", *text, L("새 글. - 는 표준 입력, 빈 글은 지우기, 없으면 지금 글을 보여요"));
  command->callback([=, &chosen] {
    const auto wanted = given->count() > 0 ? std::optional(*text) : std::nullopt;
    chosen.subcommand = [=] { return changeNote(note, *row, wanted); };
  });
}

void addRestore(CLI::App& app, CommandLine& chosen) {
  CLI::App* command =
      app.add_subcommand("restore", L("닫힌 대화를 새 탭에서 이어서 열어요"))->group(L("명령"));
  command->get_help_ptr()->group(L("옵션"));
  const auto flag = [&](const std::string& name, const std::string& description) {
    return command->add_flag(name, description)->disable_flag_override();
  };
  const CLI::Option* exact = flag("--exact", L("목록에 있는 것만 그대로 열어요"));
  const CLI::Option* dryRun = flag("--dry-run", L("무엇을 열지 보이기만 해요"));
  command->callback([=, &chosen] {
    const RestoreOptions options{.exact = exact->count() > 0, .dryRun = dryRun->count() > 0};
    chosen.subcommand = [=] { return restore(options); };
  });
}

void addSubcommands(CLI::App& app, CommandLine& chosen) {
  addListing(app, "list", L("Claude Code 탭을 한 번 보여요"), L("JSON 으로 보여요"), list, chosen);
  addListing(app, "watch", L("Claude Code 탭을 계속 보여요 (Ctrl+C 로 끝내요)"),
             L("바뀔 때마다 JSON 한 줄을 써요"), watch, chosen);
  addRow(app, "jump", L("그 탭을 앞으로 가져와요"), jump, chosen);
  addPlain(app, "next", L("가장 오래 기다린 탭으로, 없으면 끝난 탭으로 가요"), jumpToNext, chosen);
  addRow(app, "ack", L("끝난 탭을 확인한 것으로 표시해요"), acknowledge, chosen);
  addRow(app, "pin", L("집중 고정하거나 풀어요"), togglePin, chosen);
  addNote(app, "title", L("탭의 이름을 바꾸거나 보여요"), Note::title, chosen);
  addNote(app, "memo", L("탭의 메모를 바꾸거나 보여요"), Note::memo, chosen);
  addRestore(app, chosen);
  addListing(app, "terminals", L("터미널마다 무엇이 되는지 보여요"), L("JSON 으로 보여요"),
             terminals, chosen);
  addPlain(app, "connect", L("Claude Code 와 연결해요"), connect, chosen);
  addPlain(app, "disconnect", L("연결을 해제해요"), disconnect, chosen);
  addListing(app, "status", L("연결이 어떤지 보여요"), L("JSON 으로 보여요"), status, chosen);
}

CommandLine refused(const std::string& problem) {
  return {.problem = problem + "\n" + L("쓰는 법은 zelvane --help 로 볼 수 있어요.") + "\n",
          .code = wrongUsage};
}

std::string sentence(const std::vector<std::string>& unknown, const std::vector<std::string>& all) {
  const auto text = [](const auto& words) { return printable(CLI::detail::join(words, " ")); };
  return unknown.empty() ? LF("이렇게는 쓸 수 없어요: %@", {text(all)})
                         : LF("모르는 명령이나 옵션이에요: %@", {text(unknown)});
}

}  // namespace

CommandLine commandLine(int argc, const char* const* argv) {
  CommandLine chosen;
  CLI::App app(L("Claude Code 탭이 무엇을 하는지 보여요."), "zelvane");
  speakKorean(app);
  app.set_version_flag("--version", "zelvane " + Bundle::version(), L("버전을 보여요"));
  addSubcommands(app, chosen);
  app.require_subcommand(0, 1);
  try {
    app.parse(argc, argv);
  } catch (const CLI::CallForHelp&) {
    return {.output = app.help()};
  } catch (const CLI::CallForVersion& version) {
    return {.output = std::string(version.what()) + "\n"};
  } catch (const CLI::ParseError&) {
    return refused(sentence(app.remaining(true), {argv + 1, argv + argc}));
  }
  if (!chosen.subcommand) return {.problem = app.help(), .code = wrongUsage};
  return chosen;
}

ExitCode run(const CommandLine& commandLine) {
  if (commandLine.subcommand) return commandLine.subcommand();
  writeError(commandLine.problem);
  return commandLine.output.empty() ? commandLine.code : exitCode(writeOut(commandLine.output));
}

}  // namespace zelvane::cli
