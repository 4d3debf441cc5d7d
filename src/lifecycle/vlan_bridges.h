#pragma once

// Makes a bridge for each VLAN id that the profiles give to BSSs ("VLAN_ID", 2 to 4095):
// br0, br1, ... in the order of their first BSS, each with the VLAN device eth0.<id> and
// the interfaces of its BSSs. Does nothing when "UdmaEnable" is 1.
void wifi_setupVlanBridges();

// Takes down what all setups made. br0 and the device of VLAN 2 stay, on purpose.
void wifi_teardownVlanBridges();
