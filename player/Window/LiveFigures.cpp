#include "player/Window/LiveFigures.h"

#include "TarnwickRender/ShaderProgram.h"

#include <QLocale>
#include <QObject>
#include <QStringList>
#include <fstream>
#include <unistd.h>

namespace tarnwick::player {
namespace {

// Bytes of this process in memory; 0 if unknown.
qint64 residentBytes() {
    std::ifstream file("/proc/self/statm"); // pages: all, resident
    qint64 all = 0, resident = 0;
    file >> all >> resident;
    return file ? resident * sysconf(_SC_PAGESIZE) : 0;
}

QString milliseconds(double seconds) {
    return QObject::tr("%1 ms").arg(seconds * 1000, 0, 'f', 1);
}

} // namespace

QString liveFigures(const Player& player) {
    const LiveNews& news = player.news();
    QStringList lines;
    lines << QObject::tr("%1 frames/s, %2")
                 .arg(news.framesPerSecond, 0, 'f', 1)
                 .arg(milliseconds(news.frameSeconds));
    lines << QObject::tr("%1 x %2 pixels").arg(news.picture.width).arg(news.picture.height) +
                 (news.divisor > 1 ? QObject::tr(", 1/%1 size").arg(news.divisor) : QString());
    if (const gpu::Device* device = player.device())
        lines << QString::fromStdString(device->info().name);
    const OpenDocument* document = player.active();
    const auto program = document != nullptr ? document->program() : nullptr;
    if (program && program->isParticles())
        lines << QObject::tr("%1 particles").arg(QLocale().toString(program->particles()->count));
    if (const CompileResult* result = document != nullptr ? document->result() : nullptr)
        lines << QObject::tr("Compiled in %1, pipelines %2, first frame %3")
                     .arg(milliseconds(result->compileSeconds),
                          milliseconds(result->pipelineSeconds), milliseconds(news.firstDraw));
    lines << QObject::tr("Memory of the player: %1")
                 .arg(QLocale().formattedDataSize(residentBytes(), 0,
                                                  QLocale::DataSizeTraditionalFormat));
    return lines.join(QLatin1Char('\n'));
}

} // namespace tarnwick::player
