// SPDX-License-Identifier: MIT
#include "Support/TemporaryFolder.h"

#include <QImage>
#include <QString>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <ostream>
#include <string>
#include <vector>

extern char** environ;

namespace quon::testing {

namespace {

using ::testing::ContainsRegex;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::StartsWith;

struct Outcome {
    int status; ///< exit status, or the negated signal that ended the process
    std::string output;
    std::string error;
};

class KoviewerProcessTest : public ::testing::Test {
protected:
    // Runs koviewer without any display and waits for its end.
    Outcome run(const std::vector<std::string>& arguments)
    {
        const std::string output = m_folder.path("stdout");
        const std::string error = m_folder.path("stderr");
        const pid_t child = fork();
        if (child == 0) {
            unsetenv("DISPLAY");
            unsetenv("WAYLAND_DISPLAY");
            unsetenv("QT_QPA_PLATFORM");
            // The user's settings stay out of it.
            setenv("XDG_CONFIG_HOME", m_folder.path().c_str(), 1);
            if (!m_platform.empty()) {
                setenv("QT_QPA_PLATFORM", m_platform.c_str(), 1);
            }
            if (std::freopen(output.c_str(), "w", stdout) == nullptr ||
                std::freopen(error.c_str(), "w", stderr) == nullptr ||
                std::freopen(m_input.empty() ? "/dev/null" : m_input.c_str(), "r", stdin) == nullptr) {
                _exit(127);
            }
            std::vector<std::string> words{KO_VIEWER};
            words.insert(words.end(), arguments.begin(), arguments.end());
            std::vector<char*> pointers;
            for (std::string& word : words) {
                pointers.push_back(word.data());
            }
            pointers.push_back(nullptr);
            execv(KO_VIEWER, pointers.data());
            _exit(127);
        }
        int status = 0;
        waitpid(child, &status, 0);
        return {WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status), m_folder.read("stdout"),
                m_folder.read("stderr")};
    }

    Outcome runAssembly(const int partCount, const std::string& script, const std::vector<std::string>& more = {})
    {
        std::vector<std::string> arguments{
            "--headless", "--script", script, "--out", m_folder.path("out"), "--generate", std::to_string(partCount)};
        arguments.insert(arguments.end(), more.begin(), more.end());
        return run(arguments);
    }

    Outcome runHeadless(const std::string& model, const std::string& script)
    {
        return run({"--headless", "--script", script, "--out", m_folder.path("out"), model});
    }

    std::string script() { return m_folder.write("script.txt", "size 80 60\nshot picture\n"); }

    // Whatever lies in the output folder, hidden files included.
    std::vector<std::string> pictures() const
    {
        std::vector<std::string> names;
        if (std::filesystem::exists(m_folder.path("out"))) {
            for (const auto& entry : std::filesystem::directory_iterator(m_folder.path("out"))) {
                names.push_back(entry.path().filename().string());
            }
        }
        std::sort(names.begin(), names.end());
        return names;
    }

    // Bad input: exit status 2, one line on standard error, no picture.
    void expectRefused(const Outcome& outcome, const std::string& line) const
    {
        EXPECT_EQ(outcome.status, 2);
        EXPECT_EQ(outcome.error, "koviewer: " + line + "\n");
        EXPECT_EQ(outcome.output, "");
        EXPECT_THAT(pictures(), IsEmpty());
    }

    TemporaryFolder m_folder;
    std::string m_platform; ///< of Qt, empty for none
    std::string m_input;    ///< the file that is read as standard input, empty for none
};

TEST_F(KoviewerProcessTest, HelpAndVersionGoToStandardOutput)
{
    const Outcome help = run({"--help"});
    EXPECT_EQ(help.status, 0);
    EXPECT_THAT(help.output, StartsWith("Usage: koviewer"));
    EXPECT_EQ(help.error, "");

    const Outcome version = run({"--version"});
    EXPECT_EQ(version.status, 0);
    EXPECT_THAT(version.output, StartsWith("koviewer "));
    EXPECT_EQ(version.error, "");
}

TEST_F(KoviewerProcessTest, AnUnknownOptionIsRefused)
{
    expectRefused(run({"--fast"}), "--fast: unknown option, see --help");
}

TEST_F(KoviewerProcessTest, HeadlessWithoutAScriptIsRefused)
{
    expectRefused(run({"--headless", KO_ENGINE_MODEL}), "--headless: needs a model, --script and --out, see --help");
}

TEST_F(KoviewerProcessTest, AnAssemblyOfNoPartsAndOneBesideAModelAreRefused)
{
    expectRefused(run({"--generate", "0"}), "--generate: needs a number of parts from 1 to 5000000, see --help");
    expectRefused(run({"--generate", "10", KO_ENGINE_MODEL}), "--generate: takes the place of a model, see --help");
}

TEST_F(KoviewerProcessTest, AGeneratedAssemblyIsDrawnWithoutADisplay)
{
    const std::string file = m_folder.write("script.txt", "size 80 60\nclick-part \"housing 1\"\nshot picture\n");

    const Outcome outcome = run({"--headless", "--script", file, "--out", m_folder.path("out"), "--generate", "20"});

    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.error, "");
    EXPECT_THAT(pictures(), ElementsAre("01-picture.png"));
}

TEST_F(KoviewerProcessTest, ARecordingGivesTheSamePictureAgain)
{
    const std::string recording = m_folder.path("recording.txt");
    const std::string file = m_folder.write(
        "script.txt", "size 160 120\nclick-visible 1\nkey L\ndrag 50 60 90 70 right\nclick-visible 2 ctrl\n"
                      "wheel 80 60 2\nkey H\nkey O\nshot end\n");

    const Outcome first = runAssembly(20, file, {"--record", recording});
    EXPECT_EQ(first.status, 0) << first.error;
    const std::string picture = m_folder.read("out/01-end.png");
    const std::string replayed = m_folder.write("replay.txt", m_folder.read("recording.txt") + "shot end\n");
    const Outcome second = runAssembly(20, replayed);

    EXPECT_EQ(second.status, 0);
    EXPECT_EQ(second.error, "");
    EXPECT_FALSE(picture.empty());
    EXPECT_EQ(m_folder.read("out/01-end.png"), picture);
}

TEST_F(KoviewerProcessTest, AReplayThatDoesNotFitTheModelEndsWithStatusThreeAndTheLine)
{
    const std::string file = m_folder.write("script.txt", "fit\nclick-visible 1\nexpect-selection 2\nshot end\n");
    const Outcome selection = runAssembly(20, file);
    EXPECT_EQ(selection.status, 3);
    EXPECT_EQ(selection.error, "koviewer: " + file + ":3: the selection is 1 part where the recording had 2\n");
    EXPECT_THAT(pictures(), IsEmpty());

    const std::string model = m_folder.write("script.txt", "expect-model 24\n");
    const Outcome size = runAssembly(20, model);
    EXPECT_EQ(size.status, 3);
    EXPECT_EQ(size.error, "koviewer: " + model + ":1: the model has 20 parts where the recording had 24\n");
}

TEST_F(KoviewerProcessTest, AReplayInAWindowEndsTheSameWay)
{
    const std::string file = m_folder.write("script.txt", "fit\nexpect-model 24\n");

    // A window system without OpenGL is enough for that.
    m_platform = "offscreen";
    const Outcome outcome = run({"--replay", file, "--generate", "20"});

    EXPECT_EQ(outcome.status, 3);
    EXPECT_EQ(outcome.error, "koviewer: " + file + ":2: the model has 20 parts where the recording had 24\n");
}

TEST_F(KoviewerProcessTest, ARecordingThatCannotBeWrittenIsRefusedBeforeAnythingIsLoaded)
{
    const std::string blocked = m_folder.path("none/recording.txt");

    expectRefused(run({"--headless", "--script", script(), "--out", m_folder.path("out"), "--record", blocked, "none"}),
                  blocked + ": cannot be written: No such file or directory");
}

TEST_F(KoviewerProcessTest, ARecordingNeverReplacesWhatItIsMadeFrom)
{
    const std::string modelText = "o plate\nv 0 0 0\nv 1 0 0\nv 0 1 0\nf 1 2 3\n";
    const std::string model = m_folder.write("plate.obj", modelText);
    const std::string file = script();
    const std::string scriptText = m_folder.read("script.txt");
    // Other names of the same files.
    const std::string link = m_folder.path("link.txt");
    std::filesystem::create_symlink(file, link);
    const std::string detour = m_folder.path("./plate.obj");
    const std::string reason = ", which --record would replace";
    const auto headless = [&](const std::string& record) {
        return run({"--headless", "--script", file, "--out", m_folder.path("out"), "--record", record, model});
    };

    expectRefused(headless(model), model + ": is the model" + reason);
    expectRefused(headless(detour), detour + ": is the model" + reason);
    expectRefused(headless(link), link + ": is the script" + reason);
    m_platform = "offscreen";
    expectRefused(run({"--record", detour, model}), detour + ": is the model" + reason);
    expectRefused(run({"--record", link, "--replay", file, model}), link + ": is the script" + reason);

    EXPECT_EQ(m_folder.read("plate.obj"), modelText);
    EXPECT_EQ(m_folder.read("script.txt"), scriptText);
}

TEST_F(KoviewerProcessTest, ARecordingOnAFullDiskIsReportedAtTheEnd)
{
    const Outcome outcome = runAssembly(20, script(), {"--record", "/dev/full"});

    EXPECT_EQ(outcome.status, 2);
    EXPECT_EQ(outcome.error, "koviewer: /dev/full: cannot be written: No space left on device\n");
}

TEST_F(KoviewerProcessTest, AScriptThatCannotGoOnLeavesItsRecordingBehind)
{
    const std::string recording = m_folder.path("recording.txt");
    const std::string file = m_folder.write("script.txt", "size 80 60\ncommand select-all\nclick-part nobody\n");

    const Outcome outcome = runAssembly(20, file, {"--record", recording});

    EXPECT_EQ(outcome.status, 2);
    EXPECT_EQ(outcome.error, "koviewer: " + file + ":3: no part is named 'nobody'\n");
    EXPECT_THAT(m_folder.read("recording.txt"), ContainsRegex("\ncommand select-all  # .*\nexpect-selection 20 .*\n$"));
}

TEST_F(KoviewerProcessTest, ABenchmarkPrintsARowForEverythingItMeasures)
{
    const Outcome outcome = run({"--benchmark", "--generate", "400"});

    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.error, "");
    EXPECT_THAT(outcome.output, StartsWith("koviewer benchmark: 400 parts, 1280 x 720 pixels, "));
    const std::string number = " +[0-9]+\\.[0-9]+ +";
    for (const char* row :
         {"generate", "show", "first frame", "first pick", "hover, median", "hover, 95th percentile", "select all",
          "clear", "select all again", "invert", "select one", "hover after selecting"}) {
        EXPECT_THAT(outcome.output, ContainsRegex("\n  " + std::string(row) + number + "[a-z]"));
    }
    EXPECT_THAT(outcome.output, HasSubstr("\nOrbit, 1 sample "));
    EXPECT_THAT(outcome.output, HasSubstr("\nOrbit, 4 samples "));
    for (const char* scene : {"plain", "boxes", "wireframe"}) {
        for (const char* detail : {", everything", ", moving"}) {
            const std::string row = "\n  " + std::string(scene) + detail;
            const std::size_t first = outcome.output.find(row);
            ASSERT_NE(first, std::string::npos) << row;
            EXPECT_NE(outcome.output.find(row, first + 1), std::string::npos) << row;
            EXPECT_THAT(outcome.output,
                        ContainsRegex(row + number + number + number + "[0-9]+ % +[+] +[0-9]+ % +[a-z]"));
        }
    }
}

TEST_F(KoviewerProcessTest, ABenchmarkOfAMissingModelIsRefused)
{
    const std::string file = m_folder.path("none.glb");

    const Outcome outcome = run({"--benchmark", file});

    EXPECT_EQ(outcome.status, 2);
    EXPECT_EQ(outcome.error, "koviewer: " + file + ": no such file\n");
    EXPECT_EQ(outcome.output, "");
}

TEST_F(KoviewerProcessTest, AWindowWithoutADisplayIsRefused)
{
    expectRefused(run({KO_ENGINE_MODEL}), "no display: use --headless, see --help");
}

TEST_F(KoviewerProcessTest, AMissingModelIsRefusedWithAndWithoutAWindow)
{
    const std::string file = m_folder.path("none.glb");

    expectRefused(runHeadless(file, script()), file + ": no such file");
    expectRefused(run({file}), file + ": no such file");
}

TEST_F(KoviewerProcessTest, AFolderAsModelIsRefused)
{
    expectRefused(runHeadless(m_folder.path(), script()), m_folder.path() + ": is a directory");
}

TEST_F(KoviewerProcessTest, AnEmptyModelIsRefused)
{
    const std::string file = m_folder.write("empty.glb", "");

    expectRefused(runHeadless(file, script()), file + ": is empty");
}

TEST_F(KoviewerProcessTest, ATruncatedModelIsRefused)
{
    std::ifstream stream(KO_ENGINE_MODEL, std::ios::binary);
    const std::string whole{std::istreambuf_iterator<char>(stream), {}};
    const std::string file = m_folder.write("truncated.glb", whole.substr(0, whole.size() / 3));

    const Outcome outcome = runHeadless(file, script());

    EXPECT_THAT(outcome.error, StartsWith("koviewer: " + file + ": cannot be read: "));
    expectRefused(outcome, outcome.error.substr(10, outcome.error.find('\n') - 10));
}

TEST_F(KoviewerProcessTest, ARandomModelIsRefused)
{
    std::string noise;
    for (unsigned i = 0; i < 4000; ++i) {
        noise += static_cast<char>((i * 2654435761U) >> 24);
    }
    const std::string file = m_folder.write("random.glb", noise);

    expectRefused(runHeadless(file, script()), file + ": is damaged, or not of the format that its name says");
    m_platform = "offscreen";
    expectRefused(run({file}), file + ": is damaged, or not of the format that its name says");
}

TEST_F(KoviewerProcessTest, AModelThatIsNotAllThereIsDrawnAndSaysWhatIsMissing)
{
    const std::string file =
        m_folder.write("plate.obj", "mtllib red.mtl\no plate\nv 0 0 0\nv 1 0 0\nv 0 1 0\nf 1 2 3\n");

    const Outcome outcome = runHeadless(file, script());

    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.error, "koviewer: " + file + ": The file red.mtl is missing.\n");
    EXPECT_THAT(pictures(), ElementsAre("01-picture.png"));
}

TEST_F(KoviewerProcessTest, AnUnknownFormatIsRefused)
{
    const std::string file = m_folder.write("letter.txt", "Dear reader,\n");

    expectRefused(runHeadless(file, script()), file + ": unknown format");
}

TEST_F(KoviewerProcessTest, AModelWithoutMeshesIsRefused)
{
    const std::string file = m_folder.write("alone.gltf", R"({"asset": {"version": "2.0"}, "scene": 0,
                                                              "scenes": [{"nodes": [0]}], "nodes": [{}]})");

    expectRefused(runHeadless(file, script()), file + ": holds no meshes");
}

TEST_F(KoviewerProcessTest, AnOutputFolderThatCannotBeWrittenToIsRefusedBeforeAnythingElse)
{
    const std::string blocked = m_folder.write("file", "") + "/out";

    const Outcome outcome = run({"--headless", "--script", "none", "--out", blocked, "none"});

    expectRefused(outcome, blocked + ": cannot be created: Not a directory");
}

TEST_F(KoviewerProcessTest, AMissingScriptIsRefused)
{
    const std::string file = m_folder.path("none.txt");

    expectRefused(runHeadless(KO_ENGINE_MODEL, file), file + ": no such file");
}

TEST_F(KoviewerProcessTest, AScriptWithAnUnknownCommandIsRefusedBeforeItsFirstPicture)
{
    const std::string file = m_folder.write("script.txt", "# a comment\nshot picture\nexplode 3\n");

    expectRefused(runHeadless(KO_ENGINE_MODEL, file), file + ":3: unknown command 'explode'");
}

TEST_F(KoviewerProcessTest, AScriptIsReadFromStandardInputLineByLine)
{
    m_input = m_folder.write("input.txt", "size 80 60\nreport first\n\nshot one\nreport second\nexplode 3\nshot two\n");

    const Outcome outcome = runAssembly(20, "-");

    EXPECT_EQ(outcome.status, 2);
    EXPECT_EQ(outcome.error, "koviewer: standard input:6: unknown command 'explode'\n");
    EXPECT_THAT(outcome.output, ContainsRegex("^first containers .*\nsecond containers [^\n]*\n$"));
    EXPECT_THAT(pictures(), ElementsAre("01-one.png"));
}

TEST_F(KoviewerProcessTest, AScriptShowsOtherModelsAndAssembliesOneAfterTheOther)
{
    const std::string file = m_folder.write(
        "script.txt", std::string("expect-model 20\nopen \"") + KO_ENGINE_MODEL +
                          "\"\nclick-visible 1\nexpect-selection 1\ngenerate 7\nexpect-selection 0\nexpect-model 7\n");

    const Outcome outcome = runAssembly(20, file);

    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.error, "");

    const std::string missing = m_folder.path("none.glb");
    const std::string bad = m_folder.write("script.txt", "\nopen \"" + missing + "\"\n");
    const Outcome refused = runAssembly(20, bad);
    EXPECT_EQ(refused.status, 2);
    EXPECT_EQ(refused.error, "koviewer: " + bad + ":2: " + missing + ": no such file\n");
}

TEST_F(KoviewerProcessTest, AScriptThatCannotGoOnIsRefusedAndKeepsItsPictures)
{
    const std::string file = m_folder.write("script.txt", "size 80 60\nshot one\nclick-part nobody\nshot two\n");

    const Outcome outcome = runHeadless(KO_ENGINE_MODEL, file);

    EXPECT_EQ(outcome.status, 2);
    EXPECT_EQ(outcome.error, "koviewer: " + file + ":3: no part is named 'nobody'\n");
    EXPECT_THAT(pictures(), ElementsAre("01-one.png"));
}

TEST_F(KoviewerProcessTest, TheDemonstrationWritesItsPicturesAndNothingElse)
{
    const Outcome outcome = runHeadless(KO_ENGINE_MODEL, KO_DEMO_SCRIPT);

    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.error, "");
    EXPECT_EQ(outcome.output, "");
    ASSERT_THAT(pictures(), ElementsAre("01-plain.png", "02-boxes.png", "03-wireframe-overlay.png",
                                        "04-wireframe-in-scene.png", "05-hidden.png"));

    // How many pixels are near a colour of the selection; antialiasing leaves few that have it exactly.
    const auto count = [&](const std::string& name, const int red, const int green, const int blue) {
        const QImage picture(QString::fromStdString(m_folder.path("out/" + name)));
        EXPECT_EQ(picture.size(), QSize(1280, 800));
        int found = 0;
        // Without the corner of the notifications.
        for (int y = 0; y < 700; ++y) {
            for (int x = 0; x < picture.width(); ++x) {
                const QRgb pixel = picture.pixel(x, y);
                found += std::abs(qRed(pixel) - red) < 40 && std::abs(qGreen(pixel) - green) < 40 &&
                                 std::abs(qBlue(pixel) - blue) < 40
                             ? 1
                             : 0;
            }
        }
        return found;
    };
    const auto orange = [&](const std::string& name) { return count(name, 244, 133, 22); };
    const auto nearBlack = [&](const std::string& name) { return count(name, 12, 12, 12); };
    EXPECT_LT(orange("01-plain.png"), 1500);
    EXPECT_GT(orange("02-boxes.png"), orange("01-plain.png") + 3000);
    EXPECT_GT(nearBlack("02-boxes.png"), nearBlack("01-plain.png") + 500);
    EXPECT_GT(orange("03-wireframe-overlay.png"), 3 * orange("02-boxes.png"));
    EXPECT_LT(orange("04-wireframe-in-scene.png"), orange("03-wireframe-overlay.png") * 3 / 4);
    EXPECT_GT(orange("04-wireframe-in-scene.png"), orange("02-boxes.png"));
    EXPECT_LT(orange("05-hidden.png"), 1500);
}

} // namespace

} // namespace quon::testing
