#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include "Benchmarks/Report.h"

namespace bench {

namespace {

QString text(const std::string& utf8) { return QString::fromStdString(utf8); }

template <typename Items, typename Convert>
QJsonArray list(const Items& items, Convert convert) {
  QJsonArray array;
  for (const auto& item : items) array.append(convert(item));
  return array;
}

QJsonArray numbers(const std::vector<double>& values) {
  return list(values, [](double value) { return QJsonValue(value); });
}

// Counts and sizes; JSON has no integers.
QJsonValue number(auto value) { return static_cast<double>(value); }

QJsonObject cost(const CostMeasurement& measurement) {
  const CostScene& scene = measurement.scene;
  return {{"workload", text(scene.workload)},
          {"area", text(scene.areaName)},
          {"screen", QJsonArray{scene.screenWidth, scene.screenHeight}},
          {"without", numbers(measurement.without)},
          {"results", list(measurement.results, [](const CostResult& result) {
             return QJsonObject{{"subject", text(result.subject)},
                                {"extra", numbers(result.extra)},
                                {"ofProgram", numbers(result.ofProgram)},
                                {"wakeUpsASecond", numbers(result.wakeUps)}};
           })}};
}

QJsonObject memoryOf(const MemoryMeasurement& memory) {
  return {{"program", number(memory.program)},
          {"emptyTrayProgram", number(memory.emptyTrayProgram)},
          {"server", number(memory.server)},
          {"restarts", number(memory.restarts)},
          {"programAtHalf", number(memory.programAtHalf)},
          {"programAtEnd", number(memory.programAtEnd)},
          {"serverAtHalf", number(memory.serverAtHalf)},
          {"serverAtEnd", number(memory.serverAtEnd)}};
}

}  // namespace

void writeJson(const Report& report, std::ostream& out) {
  QJsonObject object{
      {"machine", text(report.machine)},
      {"secondsOfARun", number(report.options.seconds)},
      {"peers", list(report.peers,
                     [](const PeerDescription& peer) {
                       return QJsonObject{{"name", text(peer.name)},
                                          {"version", text(peer.version)},
                                          {"commandLine", text(peer.commandLine)}};
                     })},
      {"costs", list(report.costs, cost)},
      {"floors",
       list(report.floors,
            [](const Floor& floor) { return QJsonObject{{"name", text(floor.name)}, {"cost", numbers(floor.cost)}}; })},
      {"latencies", list(report.latencies, [](const LatencyMeasurement& latency) {
         return QJsonObject{{"name", text(latency.name)}, {"milliseconds", numbers(latency.milliseconds)}};
       })}};
  if (report.memory) object["memory"] = memoryOf(*report.memory);
  out << QJsonDocument(object).toJson().toStdString();
}

}  // namespace bench
