#include "app/start_instance.h"

#include "persist/settings_files.h"
#include "platform/number_text.h"

namespace tessavox {

namespace {

struct CommandRow {
    double number; // the whole command line
    CommandFlag flag;
    bool needs_running_copy; // otherwise a cold start takes it too, with the window out of sight
};

constexpr CommandRow commands[] = {
    { 300, CommandFlag::read_clipboard, false },
    { 400, CommandFlag::pause, true },
    { 500, CommandFlag::stop, true },
    { 600, CommandFlag::clipboard_to_wave, false },
};

const CommandRow* command_of(const std::string& command_line)
{
    const std::optional<double> number = to_number(command_line);
    for (const CommandRow& row : commands) {
        if (number == row.number)
            return &row;
    }
    return nullptr;
}

bool is_copy_running(PCCFile& text_file, const std::string& ConfigFolder)
{
    return !text_file.ReadFromFile(ConfigFolder + opened_file).empty()
        && to_number(text_file.FileText(2)) == 1;
}

void raise(const CommandRow& command, PCCFile& text_file, const std::string& ConfigFolder)
{
    text_file.WriteToFile(
        command_flags_text(command.flag), ConfigFolder + web_file, Durability::fleeting);
}

class NoMessageBoxes : public MessageBoxes {
public:
    MessageAnswer show(const std::string&, const std::string&, MessageButtons, MessageIcon) override
    {
        return MessageAnswer::ok;
    }
};

class NoTexts : public Texts {
public:
    std::string LoadResString(int) const override { return {}; }
};

void become_application(const Process& process, PCCFile& text_file, frmMain& main, bool hidden)
{
    main.Load();
    if (hidden)
        main.window_state = WindowState::minimised; // and by that out of sight
    else
        main.Show();
    text_file.WriteToFile(
        opened_text(true), process.ConfigFolder + opened_file, Durability::fleeting);
}

} // namespace

bool pass_command_on(
    FileStore& files, const std::string& ConfigFolder, const std::string& command_line)
{
    NoMessageBoxes no_boxes;
    const NoTexts no_texts;
    PCCFile text_file(files, no_boxes, no_texts);
    const CommandRow* const command = command_of(command_line);
    if (!command || !is_copy_running(text_file, ConfigFolder))
        return false;
    raise(*command, text_file, ConfigFolder);
    return true;
}

void StartInstance(
    Process& process, PCCFile& text_file, frmMain& main, const std::shared_ptr<openmsg>& message)
{
    const bool running = is_copy_running(text_file, process.ConfigFolder);
    const CommandRow* const command = command_of(process.platform.command_line);
    if (command && (running || !command->needs_running_copy))
        raise(*command, text_file, process.ConfigFolder);
    if (!running)
        become_application(process, text_file, main, command && !command->needs_running_copy);
    else if (!command)
        message->Show();
}

} // namespace tessavox
