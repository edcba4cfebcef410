#include "support/screen.hpp"
#include "support/testing.hpp"
#include "demo.hpp"

#include <poll.h>
#include <pty.h>
#include <sys/ioctl.h>
#include <termios.h>
#include <utmp.h>

namespace {

using namespace hueline::test;
std::vector<std::string> environment(std::vector<std::string> const& more)
{
    std::vector<std::string> all = sixteen_colors;
    for (char const* const name : {"CI", "HUELINE_PROGRESS", "LANG", "LC_CTYPE", "LC_ALL=C"}) {
        all.emplace_back(name);
    }
    all.insert(all.end(), more.begin(), more.end());
    return all;
}

Arguments tour_with(Arguments const& options)
{
    Arguments argv = {tool, "tour"};
    argv.insert(argv.end(), options.begin(), options.end());
    return argv;
}

// Runs the tour where nobody is at the keys.
Outcome tour(Sinks sinks, Arguments const& options = {}, std::vector<std::string> const& variables = {})
{
    return run_program(sinks, tour_with(options), {.environment = environment(variables)});
}

std::string const whole_text = R"~(  Colours and attributes                                               1 of 12
  Manipulators of std::cout: sequences on a terminal, nothing in a pipe.

  cout << red << "failed" << reset << '\n';                     failed
  cout << thin << green << "passed" << reset << '\n';           passed
  cout << white << on_blue << " a title " << reset << '\n';      a title
  cout << thin << italic << "italic" << reset << '\n';          italic
  cout << thin << underline << "underline" << reset << '\n';    underline
  cout << thin << reverse << " reverse " << reset << '\n';       reverse
  cout << thin << crossed << "crossed" << reset << '\n';        crossed
  cout << color{208} << "1 of 256" << reset << '\n';            1 of 256
  cout << rgb{255, 95, 175} << "24 bits" << reset << '\n';      24 bits

  24-bit colours                                                       2 of 12
  Any of 16 million colours, for the text and for its ground.

  int shade = 0;
  for (char const c : std::string(" from nightfall until noon ")) {
      shade += 9;
      cout << white << on_rgb{shade, 40 + shade / 3, 110} << c;
  }
  cout << reset << '\n';
  for (; shade > 0; shade -= 9) {
      cout << rgb{shade, 255 - shade, 90} << '#';
  }
  cout << reset << '\n';

   from nightfall until noon
  ###########################

  Messages by role                                                     3 of 12
  Say what a text is, and a theme gives it its colour.

  cout << app_title("probe 1.4") << reset << '\n';         probe 1.4
  cout << info("info: ") << reset << "2 ports found\n";    info: 2 ports found
  cout << path("/dev/ttyS0") << reset << ": ready\n";      /dev/ttyS0: ready
  cout << alert("alert: ") << reset << "no answer\n";      alert: no answer
  cout << commandLine("probe --trace") << '\n';            probe --trace
  cout << prompt("Go on?") << reset << '\n';               Go on?

  Frames in hexadecimal                                                4 of 12
  The fields of a request and a response, each in its colour.

  cout << "request   " << immediate_destination(0x10) << ' '
       << total_count(0x09) << ' ' << request_title("GET *") << reset
       << crc(std::uint16_t{0xbefb}) << reset << '\n';
  cout << "response  " << immediate_destination(0x00) << ' '
       << total_count(0x08) << ' ' << response_title("ID 7") << reset
       << crc(std::uint16_t{0x21c6}) << reset << '\n';
  cout << "in full   " << HexDump(std::string("GET *\r\n")) << '\n';

  request   10 09 47 45 54 20 2a be fb
  response  00 08 49 44 20 37 21 c6
  in full   47 45 54 20 2a 0d 0a

  A spinner                                                            5 of 12
  For work of unknown length: each insertion draws the next frame.

  std::string const turns = "|/-\\";
  for (int i = 0; i < 25; ++i) {
      cout << csi::cr << spinner{turns, "looking for ports "}
           << std::flush << csi::delay{80};
  }
  cout << csi::cr << csi::el{0} << "3 ports found\n";            3 ports found

  A status line and a meter                                            6 of 12
  For work of known length: cells that fill, and a percentage.

  std::string const done = csi::color(36) + "#" + csi::color(0);
  std::string const label = " copied";
  for (int i = 0; i <= 20; ++i) {
      cout << csi::cr
           << status_line{i, 0, 20, done, ".", "[", "]", "|/-\\", ""}
           << progress_meter{i, 0, 20, label, "", "", ""}
           << std::flush << csi::delay{100};
  }
  cout << '\n';

  [####################] copied 100%

  Cursor control                                                       7 of 12
  The controls of ECMA-48, each by its name: cub is cursor back.

  for (auto const* port : {"ttyS0", "ttyS1", "ttyS2"}) {
      cout << port << " ..." << std::flush << csi::delay{700};
      cout << csi::cub{3} << green << "ready" << reset << '\n';
  }

  ttyS0 ...ready
  ttyS1 ...ready
  ttyS2 ...ready

  The string interface                                                 8 of 12
  For text that is built first and written later: one switch, no stream.

  auto const end = Hueline::color(HexColor::reset);
  auto const pink = Hueline::color(255, 95, 175);
  auto const bad = Hueline::color(HexColor::red, "failed");
  cout << bad << end << '\n';                                  failed
  cout << pink << "24 bits" << end << '\n';                    24 bits
  cout << alert("no answer") << end << '\n';                   no answer
  cout << HexDump(std::string("GET *")) << '\n';               47 45 54 20 2a

  The kit: styles                                                      9 of 12
  A style is a value: it ends itself, nests, and fits the terminal's colours.

  constexpr auto error = fg(red) | bold;
  constexpr auto quiet = fg(cyan);
  constexpr auto pink = fg(rgb(255, 95, 175));
  cout << styled("error: ", error) << "broken\n";                error: broken
  cout << styled(quiet, "on ", styled("up", error), " on\n");    on up on
  cout << std::setw(9) << styled("12 ms", quiet) << '\n';            12 ms
  cout << styled("24 bits", pink) << '\n';                       24 bits

  The kit: text from elsewhere                                        10 of 12
  Names that hide sequences, made visible and cut to columns.

  for (auto const* name : {"log.txt", "\033[2Jlog.txt", "a-long-name.txt"}) {
      cout << pad(truncate(escape_untrusted(name), 12, "..."), 14) << "ok\n";
  }

  log.txt       ok
  \x1b[2Jlo...  ok
  a-long-na...  ok

  The kit: hex view                                                   11 of 12
  Bytes as xxd, hexdump -C and od print them, a colour for each kind.

  std::string_view const frame("\x10\x09GET *\xbe\xfb\r\n\0\xff", 13);
  cout << hexdump(std::as_bytes(std::span(frame)),
                  {.layout = hex_layout::xxd, .width = 6, .colored = true});

  00000000: 1009 4745 5420  ..GET
  00000006: 2abe fb0d 0a00  *.....
  0000000c: ff              .

  The kit: live bars                                                  12 of 12
  Moved on by any thread, with lines above them, and tidy however they end.

  progress::multi_progress group(how);
  auto const images = group.add("images", 3);
  for (std::string const name : {"kernel", "initrd", "rootfs"}) {
      auto const bar = group.add(name, 12 << 20, progress::unit::bytes);
      for (int block = 0; block < 12; ++block) {
          bar.inc(read_block());
      }
      images.inc();
  }
  group.println("3 images copied");

  kernel: done, 12.0 MiB in 00:00
  initrd: done, 12.0 MiB in 00:00
  rootfs: done, 12.0 MiB in 00:00
  3 images copied
  images: done, 3 in 00:02

  That is Hueline. From here:

  README.md            build against it
  docs/gallery.md      pictures and code
  examples/            programs to copy
  man 7 hueline        the manual
  hueline-demo --list  test patterns
)~";

// The title of a part: its first row up to its count.
std::string title_of(std::string const& row)
{
    std::string const title = row.substr(0, row.find("  ", 2));
    return title.substr(std::min(title.find_first_not_of(' '), title.size()));
}

std::vector<std::string> const titles = [] {
    std::vector<std::string> found;
    std::istringstream text(whole_text);
    for (std::string row; std::getline(text, row);) {
        if (row.ends_with(" of 12")) {
            found.push_back(title_of(row));
        }
    }
    return found;
}();

std::string const key_prompt = "any key goes on, q ends";
std::string const last_words = "That is Hueline. From here:";

struct Size {
    int rows;
    int cols;
};

// A program that has a terminal to itself, as a shell starts it: it edits lines, and shows what is typed.
class Session {
public:
    Session(Arguments const& argv, Size of, std::vector<std::string> const& variables = {}) : size(of)
    {
        winsize const room = window();
        int slave = -1;
        if (openpty(&master, &slave, nullptr, nullptr, &room) != 0) {
            throw std::runtime_error("no terminal");
        }
        before = modes();
        pid = fork();
        if (pid == 0) {
            close(master);
            login_tty(slave);
            std::vector<std::string> const changes = environment(variables);
            change_environment(changes);
            Arguments words = argv;
            execvp(words[0].c_str(), pointers_to(words).data());
            _exit(127);
        }
        close(slave);
    }
    ~Session()
    {
        if (pid > 0) {
            kill(-pid, SIGKILL);
            waitpid(pid, nullptr, 0);
        }
        close(master);
    }
    Session(Session const&) = delete;
    Session& operator=(Session const&) = delete;

    // Reads until the text, or the other one, has come since a key was pressed. Says whether it was the first.
    bool await(std::string_view text, std::string_view or_text = {})
    {
        for (;;) {
            bool const is_other = !or_text.empty() && fresh.find(or_text) != std::string::npos;
            if (is_other || fresh.find(text) != std::string::npos) {
                return !is_other;
            }
            if (!receive()) {
                throw std::runtime_error("did not come: " + std::string(text) + " but " + readable(fresh));
            }
        }
    }

    // Reads until the text has come after the other one.
    void await_after(std::string_view first, std::string_view text)
    {
        await(first);
        while (fresh.find(text, fresh.find(first)) == std::string::npos) {
            if (!receive()) {
                throw std::runtime_error("did not come: " + std::string(text) + " but " + readable(fresh));
            }
        }
    }

    // Reads until the text has come afterwards, if one is given.
    void press(std::string_view keys, std::string_view until = {})
    {
        fresh.clear();
        if (write(master, keys.data(), keys.size()) < 0) {
            throw std::runtime_error("cannot type");
        }
        await(until);
    }

    void resize(Size to)
    {
        fresh.clear();
        all.clear();
        size = to;
        winsize const room = window();
        ioctl(master, TIOCSWINSZ, &room); // sends SIGWINCH
    }

    void send(int signal) const { kill(pid, signal); }

    // Reads to the end. Says how the process ended, and whether it left the terminal as it was.
    std::string finish()
    {
        while (receive()) {
        }
        int state = 0;
        waitpid(pid, &state, 0);
        pid = -1;
        return (WIFEXITED(state) ? "exit " + std::to_string(WEXITSTATUS(state))
                                 : "signal " + std::to_string(WTERMSIG(state))) +
               (has_modes_of_start() ? "" : " with other modes");
    }

    Screen screen() const { return Screen(all, size.rows, size.cols); }
    std::string const& since_key() const { return fresh; }

    bool edits_lines() const { return (modes().c_lflag & (ICANON | ECHO)) == (ICANON | ECHO); }
    bool has_modes_of_start() const
    {
        termios const now = modes();
        return now.c_iflag == before.c_iflag && now.c_oflag == before.c_oflag && now.c_cflag == before.c_cflag &&
               now.c_lflag == before.c_lflag && std::memcmp(now.c_cc, before.c_cc, sizeof now.c_cc) == 0;
    }

private:
    winsize window() const
    {
        return {.ws_row = static_cast<unsigned short>(size.rows),
                .ws_col = static_cast<unsigned short>(size.cols),
                .ws_xpixel = 0,
                .ws_ypixel = 0};
    }

    termios modes() const
    {
        termios now = {};
        tcgetattr(master, &now);
        return now;
    }

    // False at the end.
    bool receive()
    {
        pollfd ready = {.fd = master, .events = POLLIN, .revents = 0};
        if (poll(&ready, 1, 60'000) == 0) {
            throw std::runtime_error("nothing comes after " + readable(fresh));
        }
        std::array<char, 65536> bytes;
        ssize_t const n = read(master, bytes.data(), bytes.size());
        if (n <= 0) {
            return false;
        }
        fresh.append(bytes.data(), static_cast<std::size_t>(n));
        all.append(bytes.data(), static_cast<std::size_t>(n));
        return true;
    }

    Size size;
    int master = -1;
    pid_t pid = -1;
    termios before = {};
    std::string fresh;
    std::string all;
};

// At the keys of the tour, which shows its first part.
class Tour : public Session {
public:
    explicit Tour(Size of, Arguments const& options = {}, std::vector<std::string> const& variables = {})
        : Session(tour_with(options), of, variables)
    {
        await(key_prompt);
    }
};

Size constexpr usual = {24, 80};

TEST(TourInAPipe, IsThisText)
{
    Outcome const run = tour(on_pipes);
    EXPECT_EQ(run.out, whole_text);
    EXPECT_EQ(run.err, "");
    EXPECT_EQ(run.status, 0);
}

TEST(TourOnATerminal, WithoutColorIsTheTextOfAPipe)
{
    EXPECT_EQ(tour(on_terminals, {"--color=never"}).out, whole_text);
    EXPECT_EQ(tour(on_terminals, {"--no-frills"}).out, whole_text);
    for (char const* const variable : {"NO_COLOR=1", "TERM=dumb", "CLICOLOR=0"}) {
        EXPECT_EQ(tour(on_terminals, {}, {variable}).out, whole_text) << variable;
    }
}

// What has scrolled away at the end.
std::string lines_of(Screen const& screen)
{
    std::string lines;
    for (std::string const& line : screen.lines_above()) {
        lines += line + '\n';
    }
    return lines;
}

TEST(TourInAPipe, HasTheColorsThatItIsToldToHave)
{
    std::string const out = tour(on_pipes, {"--color=always"}).out;
    EXPECT_NE(readable(out).find(R"(\e[31mfailed\e[0m)"), std::string::npos);                               // a string
    EXPECT_NE(readable(out).find(R"(\e[1;31merror: \e[22;39mbroken)"), std::string::npos) << readable(out); // a style
    EXPECT_EQ(out.find('\r'), std::string::npos);
    EXPECT_EQ(lines_of(Screen(out, 24, 90)), whole_text);
}

TEST(TourOnATerminal, WithoutKeysRunsStraightThrough)
{
    Outcome const run = tour(on_terminals, {}, {fast_clock});
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.out.find(key_prompt), std::string::npos);
    Screen const screen(run.out);
    std::string const lines = lines_of(screen);
    for (std::string const& title : titles) {
        EXPECT_NE(lines.find("  " + title + ' '), std::string::npos) << title;
    }
    for (std::string const line : {"3 ports found", "[####################] copied 100%", "ttyS2 ready",
                                   "3 images copied", "That is Hueline. From here:"}) {
        EXPECT_NE(lines.find("\n  " + line + "\n"), std::string::npos) << lines;
    }
    EXPECT_TRUE(screen.cursor_visible());
}

TEST(TourInTheBackground, AsksForNoKey)
{
    Session session({"bash", "-mc", R"("$0" tour --color=never & wait; echo all)", tool}, usual);
    session.await("all\r\n");
    EXPECT_EQ(session.since_key().find(key_prompt), std::string::npos);
    EXPECT_TRUE(session.has_modes_of_start());
}

std::string title_on(Screen const& screen) { return title_of(screen.text(0)); }

// That no row reaches the last column, and that the last of them says what to do.
void expect_fits(Screen const& screen, Size size)
{
    int last = 0;
    for (int row = 0; row < size.rows; ++row) {
        EXPECT_EQ(screen.cell(row, size.cols - 1).character, "") << screen.text(row);
        last = screen.text(row).empty() ? last : row;
    }
    EXPECT_NE(screen.text(last).find(key_prompt), std::string::npos) << screen.text(last);
    EXPECT_EQ(screen.text(last - 1), "");
    EXPECT_TRUE(screen.cursor_visible());
}

// Goes through the whole tour. Returns how many screens it has.
std::size_t expect_all_parts(Size size)
{
    Tour session(size, {}, {fast_clock});
    std::vector<std::string> seen;
    std::size_t screens = 0;
    while (session.await(key_prompt, last_words)) {
        Screen const screen = session.screen();
        expect_fits(screen, size);
        std::string const title = title_on(screen);
        if (seen.empty() || seen.back() != title) {
            seen.push_back(title);
        }
        EXPECT_NE(screen.text(0).find(std::to_string(seen.size()) + " of 12"), std::string::npos) << screen.text(0);
        for (char const c : session.since_key()) {
            EXPECT_LT(static_cast<unsigned char>(c), 0x80) << title; // as the locale wants it
        }
        ++screens;
        session.press(" ");
    }
    EXPECT_EQ(session.finish(), "exit 0");
    EXPECT_EQ(seen, titles);
    return screens;
}

TEST(TourAtTheKeys, HasAScreenForEachPart)
{
    EXPECT_EQ(expect_all_parts({24, 80}), 12U);
    EXPECT_EQ(expect_all_parts({40, 120}), 12U);
}

TEST(TourAtTheKeys, FitsASmallTerminal) { EXPECT_GT(expect_all_parts({12, 40}), 12U); }

TEST(TourAtTheKeys, ComesToItsEndWhereNothingFits)
{
    Session session({tool, "tour"}, {5, 20}, {fast_clock});
    while (session.await("any key goes on", "That is")) {
        session.press(" ");
    }
    EXPECT_EQ(session.finish(), "exit 0");
}

TEST(TourAtTheKeys, ShowsTheCodeBesideWhatItWritesAndLeavesItAboveTheNextScreen)
{
    Tour session(usual);
    Screen const screen = session.screen();
    std::string const fourth_row = R"(  cout << red << "failed" << reset << '\n';                     failed)";
    EXPECT_EQ(screen.text(0), "  Colours and attributes                                               1 of 12");
    EXPECT_EQ(screen.text(3), fourth_row);
    EXPECT_EQ(screen.cell(3, 64).foreground.index, 1);
    EXPECT_TRUE(screen.cell(3, 64).bold);
    EXPECT_TRUE(screen.cell(3, 2).foreground.is_default);
    EXPECT_TRUE(screen.cell(6, 64).italic);
    EXPECT_EQ(screen.cell(11, 64).foreground.r, 255);
    EXPECT_EQ(screen.cell(11, 64).foreground.g, 95);

    session.press(" ", key_prompt);
    std::vector<std::string> const lines = session.screen().lines_above();
    EXPECT_NE(std::find(lines.begin(), lines.end(), fourth_row), lines.end());
    EXPECT_EQ(std::find(lines.begin(), lines.end(), "  " + key_prompt), lines.end());
    EXPECT_EQ(title_on(session.screen()), titles[1]);
}

TEST(TourAtTheKeys, ShowsWhatDoesNotFitOnScreensOfItsOwn)
{
    Tour session({12, 40});
    EXPECT_EQ(session.screen().text(0), "Colours and attributes          1 of 12");
    EXPECT_EQ(session.screen().text(2), "a terminal, nothing in a pipe.");
    EXPECT_EQ(session.screen().text(4), "failed");
    session.press(" ", key_prompt);
    EXPECT_EQ(session.screen().text(0), "Colours and attributes          1 of 12");
    EXPECT_EQ(session.screen().text(2), "crossed");
    session.press(" ", key_prompt);
    EXPECT_EQ(session.screen().text(2), R"(cout << red << "failed" << reset)");
    EXPECT_EQ(session.screen().text(3), R"(    << '\n';)");
}

TEST(TourAtTheKeys, EndsWithWhatToDoNext)
{
    Tour session(usual, {"--color=never"});
    for (int i = 0; i < 12; ++i) {
        session.await(key_prompt);
        session.press("x");
    }
    EXPECT_EQ(session.finish(), "exit 0");
    EXPECT_NE(session.since_key().find("  That is Hueline. From here:\r\n\r\n"
                                       "  README.md            build against it\r\n"),
              std::string::npos);
}

TEST(TourAtTheKeys, WithoutColorWritesNoSequence)
{
    for (std::string const variable : {"NO_COLOR=1", "TERM=dumb"}) {
        Tour session({12, 40}, {}, {variable});
        expect_fits(session.screen(), {12, 40});
        EXPECT_EQ(session.screen().text(0), "Colours and attributes          1 of 12");
        session.press(" ", key_prompt);
        session.press("q");
        EXPECT_EQ(session.finish(), "exit 0");
        EXPECT_FALSE(has_sequences(session.since_key()));
        EXPECT_EQ(session.since_key(), '\r' + std::string(key_prompt.size(), ' ') + '\r');
    }
}

TEST(TourAtTheKeys, EndsAtOnceWhenAsked)
{
    for (std::string const key : {"q", "Q", "\x04"}) {
        Tour session(usual);
        EXPECT_FALSE(session.edits_lines());
        session.press(key);
        EXPECT_EQ(session.finish(), "exit 0");
        EXPECT_EQ(session.since_key(), '\r' + std::string(key_prompt.size() + 2, ' ') + "\r\x1b[00m\x1b[25h");
    }
}

TEST(TourAtTheKeys, TakesAKeyOfSeveralBytesForOne)
{
    Tour session(usual);
    session.press("\x1b[1;5C", key_prompt);
    EXPECT_EQ(title_on(session.screen()), titles[1]);
    session.press(" ", key_prompt);
    EXPECT_EQ(title_on(session.screen()), titles[2]);
}

// Comes to a part that moves, and waits until it does.
void go_to(Session& session, std::size_t part, std::string_view moving)
{
    for (std::size_t i = 0; i < part; ++i) {
        session.await(i >= 4 ? titles[i] : key_prompt); // parts that move are left at once
        session.press(" ");
    }
    session.await(moving);
}

TEST(TourAtTheKeys, LeavesAPartThatMovesAtOnce)
{
    Tour session(usual);
    go_to(session, 4, "looking for ports /");
    session.press(" ", "copied 5%"); // of the next part
    EXPECT_EQ(title_on(session.screen()), titles[5]);
    EXPECT_EQ(session.since_key().find("3 ports found"), std::string::npos);
    session.press("q");
    EXPECT_EQ(session.finish(), "exit 0");
}

TEST(TourAtTheKeys, ShowsThePartAgainOnAScreenOfAnotherSize)
{
    Tour session(usual);
    session.press(" ", key_prompt);
    session.resize({12, 40});
    session.await(key_prompt);
    EXPECT_EQ(session.screen().text(0), "24-bit colours                  2 of 12");
    expect_fits(session.screen(), {12, 40});
}

TEST(TourAndSignals, GivesTheTerminalBackBeforeItEnds)
{
    forbid_cores();
    for (int const signal : ending_signals) {
        Tour session(usual);
        EXPECT_FALSE(session.edits_lines());
        session.send(signal);
        EXPECT_EQ(session.finish(), "signal " + std::to_string(signal));
        EXPECT_TRUE(session.since_key().ends_with("\x1b[0m\x1b[?25h\r\n")) << readable(session.since_key());
    }
    Tour session(usual);
    session.press("\x03"); // the key of the terminal for it
    EXPECT_EQ(session.finish(), "signal " + std::to_string(SIGINT));
}

TEST(TourAndSignals, WipesWhatMovesBeforeItEnds)
{
    Tour session(usual);
    go_to(session, 4, "looking for ports /");
    session.send(SIGTERM);
    EXPECT_EQ(session.finish(), "signal " + std::to_string(SIGTERM));
    EXPECT_TRUE(session.since_key().ends_with("\r\x1b[J\x1b[0m\x1b[?25h\r\n")) << readable(session.since_key());
    EXPECT_TRUE(session.has_modes_of_start());
}

// A shell with job control, which tells when the tour was stopped, and takes it up again.
Arguments const stopped_and_taken_up = {
    "bash", "-mc", R"("$0" tour; echo "stopped $?"; read -r; fg >/dev/null; echo "ended $?")", tool};

TEST(TourAndSignals, IsStoppedAndGoesOn)
{
    Session session(stopped_and_taken_up, usual);
    session.await(key_prompt);
    session.press(" ", key_prompt);
    session.press("\x1a", "stopped 148\r\n");
    EXPECT_TRUE(session.has_modes_of_start());
    EXPECT_NE(session.since_key().find("\x1b[0m\x1b[?25h\r\n"), std::string::npos);

    session.press("\n", key_prompt);
    EXPECT_EQ(title_on(session.screen()), titles[1]);
    EXPECT_FALSE(session.edits_lines());
    session.press(" ", key_prompt);
    EXPECT_EQ(title_on(session.screen()), titles[2]);
    session.press("q", "ended 0\r\n");
    EXPECT_TRUE(session.has_modes_of_start());
}

TEST(TourAndSignals, IsStoppedWhileItMoves)
{
    Session session(stopped_and_taken_up, usual);
    go_to(session, 4, "looking for ports /");
    session.press("\x1a", "stopped 148\r\n");
    EXPECT_TRUE(session.has_modes_of_start());
    session.press("\n", "looking for ports /");
    session.press("q", "ended 0\r\n");
    EXPECT_TRUE(session.has_modes_of_start());
}

TEST(TourAndSignals, GoesOnWhereNoShellCouldFetchIt)
{
    Tour session(usual); // leads its session: the system does not stop it
    session.press("\x1a", key_prompt);
    EXPECT_FALSE(session.edits_lines());
    EXPECT_EQ(title_on(session.screen()), titles[0]);
    session.press("q");
    EXPECT_EQ(session.finish(), "exit 0");
}

TEST(TourAndSignals, GoesOnWhereItIsStoppedJustBeforeItWaits)
{
    Tour session(usual, {}, {fast_clock, "STOP_BEFORE_WAIT=1"});
    session.await_after("\x1b[0m\x1b[?25h\r\n", key_prompt);
    session.press("q");
    EXPECT_EQ(session.finish(), "exit 0");
}

TEST(TourAndSignals, WaitsInTheBackgroundUntilItIsFetched)
{
    std::string const script =
        R"("$0" tour; bg >/dev/null; wait %1; echo "waits $?"; read -r; fg >/dev/null; echo "ended $?")";
    Session session({"bash", "-mc", script, tool}, usual);
    session.await(key_prompt);
    session.press("\x1a", "waits " + std::to_string(128 + SIGTTIN) + "\r\n");
    EXPECT_EQ(session.since_key().find(key_prompt), std::string::npos);
    session.press("\n", key_prompt);
    EXPECT_EQ(title_on(session.screen()), titles[0]);
    EXPECT_FALSE(session.edits_lines());
    session.press("q", "ended 0\r\n");
    EXPECT_TRUE(session.has_modes_of_start());
}

TEST(OtherDemonstrations, AreStoppedTidilyAndGoOn)
{
    Session session({"bash", "-mc", R"("$0" status; echo "stopped $?"; read -r; fg >/dev/null; echo "ended $?")", tool},
                    usual);
    session.await("#");
    session.press("\x1a", "stopped 148\r\n");
    EXPECT_NE(session.since_key().find("\x1b[0m\x1b[?25h\r\n"), std::string::npos);
    session.press("\n", "ended 0\r\n");
    EXPECT_NE(session.since_key().find('#'), std::string::npos);
}

} // namespace
