/* Records of the network interface and basic service sections. */
#ifndef PROTOFIX_RECORDS_NETWORK_H
#define PROTOFIX_RECORDS_NETWORK_H

/* Capacity of the interface table of KZDEV_NETWORK_CFG. */
#define KZ_MAX_NET_INTERFACES 8

/* Bits of KZ_NET_INTERFACE.flags. */
#define KZ_NET_INTERFACE_ENABLE 0x01u
#define KZ_NET_INTERFACE_DHCP 0x02u

/* KZ_NET_INTERFACE.bondingMode. */
#define KZ_BONDING_NONE 0
#define KZ_BONDING_BALANCE 1
#define KZ_BONDING_OFF 2
#define KZ_BONDING_ACTIVE_BACKUP 3

#ifdef __cplusplus
extern "C" {
#endif

/* One wired interface: 188 bytes. */
typedef struct KZ_NET_INTERFACE {
    char ipAddress[16];          /* "IPAddress", dotted IPv4 text */
    char subnetMask[16];         /* "SubnetMask" */
    char defaultGateway[16];     /* "DefaultGateway" */
    unsigned char reserved1[2];
    unsigned char flags;         /* KZ_NET_INTERFACE_ENABLE | KZ_NET_INTERFACE_DHCP; other bits kept */
    unsigned char isDefault;     /* 1 for the default interface */
    unsigned char reserved2[40];
    unsigned char bondingMode;   /* KZ_BONDING_* */
    unsigned char reserved3[31];
    char name[64];               /* "eth0", "bond0": the key of the interface's object */
} KZ_NET_INTERFACE;

/* "Network". */
typedef struct KZDEV_NETWORK_CFG {
    int leadingWord;             /* not touched by the conversion */
    char hostName[16];           /* "Hostname" */
    unsigned char reserved[12];
    unsigned int interfaceCount; /* valid entries of interfaces[] */
    KZ_NET_INTERFACE interfaces[KZ_MAX_NET_INTERFACES];
} KZDEV_NETWORK_CFG;

/* "Network_DNS". */
typedef struct KZDEV_DNS_CFG {
    char primaryDns[16];
    char secondaryDns[16];
} KZDEV_DNS_CFG;

/* "RTSP". */
typedef struct KZDEV_RTSP_CFG {
    unsigned short port;
} KZDEV_RTSP_CFG;

/*
 * The device's general network record, 1972 bytes. Shared by "Web", "Multicast", "PPPoE" and
 * "DVRIP_NET"; the reserved stretches are fields of the device that no section converts.
 */
typedef struct KZDEV_NET_CFG {
    unsigned char reserved1[20];
    unsigned short maxConnections;   /* DVRIP_NET "MaxConnections" */
    unsigned short tcpPort;          /* DVRIP_NET "TCPPort" */
    unsigned short udpPort;          /* DVRIP_NET "UDPPort" */
    unsigned short httpPort;         /* Web "Port" */
    unsigned char reserved2[2];
    unsigned short sslPort;          /* DVRIP_NET "SSLPort" */
    unsigned char reserved3[1592];
    unsigned char multicastEnable;   /* Multicast "Enable", DVRIP_NET "MCASTEnable" */
    unsigned char reserved4[1];
    unsigned short multicastPort;    /* Multicast "Port", DVRIP_NET "MCASTPort" */
    char multicastAddress[16];       /* Multicast "MulticastAddr", DVRIP_NET "MCASTAddress" */
    unsigned char reserved5[212];
    unsigned char pppoeEnable;       /* PPPoE "Enable" */
    unsigned char reserved6[19];
    char pppoeUserName[64];          /* PPPoE "UserName" */
    char pppoePassword[32];          /* PPPoE "Password" */
} KZDEV_NET_CFG;

/* "IPv6": the first interface's IPv6 settings. */
typedef struct KZDEV_IPV6_CFG {
    char linkLocalAddress[44];       /* "LinkLocalAddress", written only */
    char ipAddress[40];              /* "IPAddress" */
    unsigned int prefix;             /* "Prefix" */
    char defaultGateway[40];         /* "DefaultGateway" */
    unsigned char dhcpEnable;        /* "DhcpEnable" */
    char preferredDns[40];           /* "DnsServers"[0] */
    char alternateDns[40];           /* "DnsServers"[1] */
} KZDEV_IPV6_CFG;

#ifdef __cplusplus
}
#endif

#endif
