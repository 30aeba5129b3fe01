#include "platform/simulated/Machine.h"

namespace simulated {

Machine ExampleMachine() {
  using Start = platform::ServiceStart;
  Machine machine;

  Adapter onboard;
  onboard.dhcpEnabled = true;
  onboard.ipAddresses = {"192.168.10.57"};
  onboard.subnetMasks = {"255.255.255.0"};
  onboard.gateways = {"192.168.10.1"};
  onboard.dnsServers = {"192.168.10.1"};
  onboard.dnsHostName = "TEMPLATE";

  Adapter card;
  card.index = 8;
  card.settingId = "{66666666-7777-8888-9999-AAAAAAAAAAAA}";
  card.pnpDeviceId = R"(PCI\VEN_8086&DEV_10D3&SUBSYS_A01F8086&REV_00\4&1C3D25BB&0&00E0)";
  card.locationInformation =
      R"(@System32\drivers\pci.sys,#65536;PCI bus %1, device %2, function %3;(4,0,0))";
  card.macAddress = "08:00:27:65:43:21";
  card.caption = "[00000008] Intel(R) 82574L Gigabit Network Connection";
  card.dhcpEnabled = false;
  card.ipAddresses = {"10.20.0.15"};
  card.subnetMasks = {"255.255.0.0"};
  card.dnsHostName = "TEMPLATE";

  Adapter software;
  software.index = 12;
  software.settingId = "{BBBBBBBB-CCCC-DDDD-EEEE-FFFFFFFFFFFF}";
  software.pnpDeviceId = R"(ROOT\NET\0000)";
  software.locationInformation.reset();
  software.macAddress = "02:00:4C:4F:4F:50";
  software.manufacturer = "Microsoft";
  software.caption = "[00000012] Microsoft KM-TEST Loopback Adapter";
  software.dhcpEnabled = true;
  software.ipAddresses = {"169.254.80.12"};
  software.subnetMasks = {"255.255.0.0"};
  software.dnsHostName = "TEMPLATE";

  machine.adapters = {onboard, card, software};
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
