// What the project store's operations cost in a project of ten thousand boxes.
#include <pk/project/project_model.hpp>

#include <QTemporaryDir>
#include <benchmark/benchmark.h>

#include <malloc.h>
#include <map>
#include <memory>

using pk::project::ArchiveFormat;
using pk::project::ProjectModel;

namespace {

QString boxPath(int number)
{
    return QStringLiteral("All/Folder %1/Box %2").arg(number / 20).arg(number);
}

const QByteArray& boxBytes()
{
    static const QByteArray bytes(4096, 'x');
    return bytes;
}

/// A saved project of many boxes, made once for each size.
class Project
{
public:
    static Project& of(int boxes)
    {
        static std::map<int, std::unique_ptr<Project>> projects;
        auto& project = projects[boxes];
        if (!project) {
            project.reset(new Project(boxes));
        }
        return *project;
    }

    QString directory() const { return m_place.filePath(QStringLiteral("Library")); }
    QString archive() const { return m_place.filePath(QStringLiteral("Library.bxl")); }

private:
    explicit Project(int boxes)
    {
        ProjectModel model;
        for (int i = 0; i < boxes; ++i) {
            model.writeFile(boxPath(i) + QStringLiteral("/box.bhx"), boxBytes());
        }
        model.save(directory(), ArchiveFormat::Directory, false);
        model.save(archive(), ArchiveFormat::Zip, false);
    }
    QTemporaryDir m_place;
};

void hasFile(benchmark::State& state)
{
    const ProjectModel model(Project::of(10'000).directory());
    const QString path = boxPath(7'777) + QStringLiteral("/box.bhx");
    for ([[maybe_unused]] auto _ : state) {
        benchmark::DoNotOptimize(model.hasFile(path));
    }
}
BENCHMARK(hasFile);

void moveAllBoxes(benchmark::State& state)
{
    ProjectModel model(Project::of(10'000).directory());
    const QString names[] = {QStringLiteral("All"), QStringLiteral("Every")};
    int at = 0;
    for ([[maybe_unused]] auto _ : state) {
        model.move(names[at], names[1 - at], false);
        at = 1 - at;
    }
}
BENCHMARK(moveAllBoxes);

void removeAllBoxes(benchmark::State& state)
{
    for ([[maybe_unused]] auto _ : state) {
        state.PauseTiming();
        auto model = std::make_unique<ProjectModel>(Project::of(10'000).directory());
        state.ResumeTiming();
        model->remove(QStringLiteral("All"));
        state.PauseTiming();
        model.reset();
        state.ResumeTiming();
    }
}
BENCHMARK(removeAllBoxes)->Iterations(20);

// Boxes that were never saved: their entries have to be freed at some time.
void removeAllNewBoxes(benchmark::State& state)
{
    for ([[maybe_unused]] auto _ : state) {
        state.PauseTiming();
        ProjectModel model;
        model.importFile(ProjectModel(Project::of(10'000).archive()), QString(), QString(), true);
        state.ResumeTiming();
        model.remove(QStringLiteral("All"));
        state.PauseTiming();
        model = ProjectModel();
        state.ResumeTiming();
    }
}
BENCHMARK(removeAllNewBoxes)->Iterations(3)->Unit(benchmark::kMicrosecond);

void openDirectory(benchmark::State& state)
{
    const QString path = Project::of(10'000).directory();
    for ([[maybe_unused]] auto _ : state) {
        benchmark::DoNotOptimize(ProjectModel(path));
    }
}
BENCHMARK(openDirectory)->Unit(benchmark::kMillisecond);

void openArchive(benchmark::State& state)
{
    const QString path = Project::of(10'000).archive();
    for ([[maybe_unused]] auto _ : state) {
        benchmark::DoNotOptimize(ProjectModel(path));
    }
}
BENCHMARK(openArchive)->Unit(benchmark::kMillisecond);

void indexMemory(benchmark::State& state)
{
    const QString path = Project::of(10'000).directory();
    double bytes = 0;
    for ([[maybe_unused]] auto _ : state) {
        const auto before = mallinfo2().uordblks;
        const ProjectModel model(path);
        bytes = static_cast<double>(mallinfo2().uordblks - before);
    }
    state.counters["bytesPerBox"] = bytes / 10'000;
}
BENCHMARK(indexMemory)->Iterations(1);

} // namespace
