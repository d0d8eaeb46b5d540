// The keys of each record in a recording, told once for writing and for reading: `visit` is called
// with a key and its field, and with the range of a number where it is not the whole range of its
// type, in the order of the line.
#pragma once

#include <concepts>
#include <cstdint>
#include <type_traits>

#include "hosts/replay/recording_records.h"

namespace embrix {

template <typename Record, typename Known>
concept Is = std::same_as<std::remove_const_t<Record>, Known>;

void fields(Is<MachineFacts> auto& machine, auto& visit) {
  visit("productName", machine.productName);
  visit("chip", machine.chip);
  visit("performanceCores", machine.performanceCores);
  visit("efficiencyCores", machine.efficiencyCores);
  visit("memoryBytes", machine.memoryBytes);
  visit("systemName", machine.systemName);
  visit("systemMajor", machine.systemMajor);
  visit("systemMinor", machine.systemMinor);
  visit("systemPatch", machine.systemPatch);
  visit("model", machine.model);
}

void fields(Is<UserFacts> auto& user, auto& visit) {
  visit("uid", user.uid);
  visit("homeDirectory", user.homeDirectory);
}

void fields(Is<BaseFolders> auto& folders, auto& visit) {
  visit("cache", folders.cache);
  visit("data", folders.data);
}

void fields(Is<RecordingHeader> auto& header, auto& visit) {
  visit("host", header.hostName);
  visit("uptime", header.uptime);
  visit("wallTime", header.wallTime);
  visit("machine", header.machine);
  visit("user", header.user);
  visit("ticksToNS", header.ticksToNS);
  visit("pageSize", header.pageSize);
  visit("physicalBytes", header.physicalBytes);
  visit("hasBattery", header.hasBattery);
  visit("hasSmc", header.hasSmc);
  visit("sensors", header.sensors);
  visit("baseFolders", header.baseFolders);
}

void fields(Is<RawProcess> auto& process, auto& visit) {
  visit("pid", process.pid, 0, INT32_MAX);
  visit("ppid", process.ppid);
  visit("uid", process.uid);
  visit("startTime", process.startTime);
  visit("commandName", process.commandName);
  visit("usage", process.usage);
}

void fields(Is<PlacedProcess> auto& placed, auto& visit) {
  visit("place", placed.place);
  fields(placed.process, visit);
}

void fields(Is<ChangedCounters> auto& counters, auto& visit) {
  visit("pid", counters.pid, 0, INT32_MAX);
  visit("usage", counters.usage);
}

void fields(Is<ProcessTableChange> auto& change, auto& visit) {
  visit("all", change.all);
  visit("gone", change.gone);
  visit("changed", change.changed);
  visit("added", change.added);
}

void fields(Is<ListeningPort> auto& port, auto& visit) {
  visit("port", port.port, 1, 65535);
  visit("exposed", port.exposed);
}

void fields(Is<ProcessAnswers> auto& answers, auto& visit) {
  visit("path", answers.path);
  visit("arguments", answers.arguments);
  visit("directory", answers.directory);
  visit("listening", answers.listening);
  visit("responsiblePID", answers.responsiblePID);
}

void fields(Is<ApplicationBundle> auto& bundle, auto& visit) {
  visit("displayName", bundle.displayName);
  visit("name", bundle.name);
  visit("identifier", bundle.identifier);
}

void fields(Is<InstalledApplication> auto& application, auto& visit) {
  visit("name", application.name);
  visit("identifier", application.identifier);
  visit("path", application.path);
}

void fields(Is<EnergyChannel> auto& channel, auto& visit) {
  visit("name", channel.name);
  visit("unit", channel.unit);
  visit("value", channel.value);
}

void fields(Is<EnergyInterval> auto& interval, auto& visit) {
  visit("channels", interval.channels);
  visit("channelSeconds", interval.seconds);
}

void fields(Is<GpuClient> auto& client, auto& visit) {
  visit("creator", client.creator);
  visit("accumulatedTimes", client.accumulatedTimes);
}

void fields(Is<MemoryCounters> auto& counters, auto& visit) {
  visit("internalPages", counters.internalPages);
  visit("purgeablePages", counters.purgeablePages);
  visit("wiredPages", counters.wiredPages);
  visit("compressorPages", counters.compressorPages);
}

void fields(Is<ProcessAssertions> auto& assertions, auto& visit) {
  visit("pid", assertions.pid);
  visit("assertions", assertions.assertions);
}

void fields(Is<FileFacts> auto& facts, auto& visit) {
  visit("kind", facts.kind);
  visit("modified", facts.modified);
  visit("device", facts.identity.device);
  visit("inode", facts.identity.inode);
  visit("born", facts.identity.born);
}

void fields(Is<FolderEntry> auto& entry, auto& visit) {
  visit("name", entry.name);
  visit("kind", entry.kind);
  visit("modified", entry.modified);
  visit("hidden", entry.hidden);
}

void fields(Is<RecordedTick> auto& tick, auto& visit) {
  visit("tick", tick.number);
  visit("uptime", tick.uptime);
  visit("wallTime", tick.wallTime);
  visit("processes", tick.processes);
  visit("about", tick.lasting.about);
  visit("bundles", tick.lasting.bundles);
  visit("programs", tick.lasting.programs);
  visit("applicationPaths", tick.lasting.applicationPaths);
  visit("energySamples", tick.energySamples);
  visit("energyIntervals", tick.energyIntervals);
  visit("batteryRegistry", tick.batteryRegistry);
  visit("powerSources", tick.powerSources);
  visit("temperatures", tick.temperatures);
  visit("smc", tick.lasting.smc);
  visit("thermalState", tick.thermalState);
  visit("gpuStatistics", tick.gpuStatistics);
  visit("gpuClients", tick.gpuClients);
  visit("memoryCounters", tick.memoryCounters);
  visit("memoryFreeLevel", tick.memoryFreeLevel);
  visit("assertions", tick.assertions);
  visit("files", tick.lasting.files);
  visit("resolvedPaths", tick.lasting.resolvedPaths);
  visit("existing", tick.lasting.existing);
  visit("fileFacts", tick.lasting.fileFacts);
  visit("folderLists", tick.lasting.folderLists);
  visit("folderSizes", tick.lasting.folderSizes);
  visit("powerLog", tick.lasting.powerLog);
  visit("commandOutputs", tick.lasting.commandOutputs);
  visit("commandStarts", tick.lasting.commandStarts);
}

}  // namespace embrix
