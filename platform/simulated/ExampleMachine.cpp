#include "platform/simulated/Machine.h"

namespace simulated {

Machine ExampleMachine() {
  using Start = platform::ServiceStart;
  Machine machine;

  machine.adapters = {
      {.ipAddresses = {"192.168.10.57"},
       .subnetMasks = {"255.255.255.0"},
       .gateways = {"192.168.10.1"},
       .dnsServers = {"192.168.10.1"},
       .dnsHostName = "TEMPLATE"},
      {.index = 8,
       .settingId = "{66666666-7777-8888-9999-AAAAAAAAAAAA}",
       .pnpDeviceId = R"(PCI\VEN_8086&DEV_10D3&SUBSYS_A01F8086&REV_00\4&1C3D25BB&0&00E0)",
       .locationInformation =
           R"(@System32\drivers\pci.sys,#65536;PCI bus %1, device %2, function %3;(4,0,0))",
       .macAddress = "08:00:27:65:43:21",
       .caption = "[00000008] Intel(R) 82574L Gigabit Network Connection",
       .dhcpEnabled = false,
       .ipAddresses = {"10.20.0.15"},
       .subnetMasks = {"255.255.0.0"},
       .dnsHostName = "TEMPLATE"},
      {.index = 12,
       .settingId = "{BBBBBBBB-CCCC-DDDD-EEEE-FFFFFFFFFFFF}",
       .pnpDeviceId = R"(ROOT\NET\0000)",
       .locationInformation = std::nullopt,
       .macAddress = "02:00:4C:4F:4F:50",
       .manufacturer = "Microsoft",
       .caption = "[00000012] Microsoft KM-TEST Loopback Adapter",
       .ipAddresses = {"169.254.80.12"},
       .subnetMasks = {"255.255.0.0"},
       .dnsHostName = "TEMPLATE"}};
  machine.services = {{"Dhcp", Start::kAutomatic, true},
                      {"NetBT", Start::kSystem, true},
                      {"LmHosts", Start::kManual, true},
                      {"NwlnkNb", Start::kManual, false}};
  machine.hosts = {{"gateway.corp.example", "10.20.0.1"}};
  machine.decrypt = {{"ENCIPHERED-USER", "joiner"}, {"ENCIPHERED-PASSWORD", "s3cret"}};
  machine.domains = {{"corp.example",
                      "CORP",
                      {{"joiner", "s3cret"}},
                      {"OU=Sales,DC=corp,DC=example", "OU=Europe,OU=Sales,DC=corp,DC=example"},
                      {}}};
  return machine;
}

}  // namespace simulated
