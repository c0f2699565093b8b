// libvlan_mgr.so: the VLAN manager's client library. Displays open it before they ask for VLANs.
extern "C" {
extern const unsigned vlan_mgr_library_version;
const unsigned vlan_mgr_library_version = 1;
}
