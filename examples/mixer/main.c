/* Prints the control surfaces in the order of their groups and positions, as a mixer reads them. */
#include <CoreMIDI/CoreMIDI.h>
#include <CoreMIDI/MIDIDatabase.h>

#include <stdio.h>
#include <stdlib.h>
#include <string.h>

typedef struct {
    SInt32 group, position, client, port;
    MIDIDeviceRef device;
    char name[256];
} Surface;

static int ByPlace(const void* one, const void* other) {
    const Surface *a = one, *b = other;
    const int groups = (a->group > b->group) - (a->group < b->group);
    return groups ? groups : (a->position > b->position) - (a->position < b->position);
}

static int ReadSurface(MIDIDeviceRef device, Surface* surface) {
    CFStringRef name = NULL;
    surface->device = device;
    if (MIDIObjectGetIntegerProperty(device, CFSTR("com_velt_sorvex_control_surface_groupid"),
                                     &surface->group) ||
        MIDIObjectGetIntegerProperty(device, CFSTR("com_velt_sorvex_control_surface_grouppos"),
                                     &surface->position))
        return 0;
    if (MIDIObjectGetStringProperty(device, kMIDIPropertyName, &name) == 0) {
        if (!CFStringGetCString(name, surface->name, sizeof surface->name, kCFStringEncodingUTF8))
            strcpy(surface->name, "(a long name)");
        CFRelease(name);
    }
    return 1;
}

/* The surface that an endpoint leads to: the unit that it belongs to, for its first port, or what
 * is cabled to the endpoint; 0 for none. */
static MIDIObjectRef SurfaceAt(MIDIEndpointRef endpoint) {
    SInt32 id = 0;
    MIDIObjectRef object = 0, owner = 0;
    if (MIDIObjectGetIntegerProperty(endpoint, kMIDIPropertyConnectionUniqueID, &id) == 0) {
        MIDIObjectFindByUniqueID(id, &object, NULL);
    } else if (MIDIEndpointGetEntity(endpoint, &object) == 0 &&
               MIDIEntityGetDevice(object, &owner) == 0 &&
               MIDIDeviceGetEntity(owner, 0) != object) {
        return 0;
    }
    if (MIDIEndpointGetEntity(object, &owner) == 0)
        object = owner;
    return MIDIEntityGetDevice(object, &owner) == 0 ? owner : object;
}

/* Adds the sequencer port that a mixer would open; a surface that is unplugged has none. */
static void AddPort(Surface* surface) {
    const ItemCount sources = MIDIGetNumberOfSources();
    for (ItemCount i = 0; i < sources; ++i) {
        const MIDIEndpointRef source = MIDIGetSource(i);
        if (SurfaceAt(source) == surface->device &&
            MIDIObjectGetIntegerProperty(source, kKestrinMIDIPropertySequencerClient,
                                         &surface->client) == 0)
            MIDIObjectGetIntegerProperty(source, kKestrinMIDIPropertySequencerPort, &surface->port);
    }
}

/* Says on standard error why the database cannot be used. */
static int DatabaseFails(void) {
    char reason[1024] = "The MIDI database cannot be used.";
    CFStringRef problem = KestrinMIDICopyDatabaseProblem();
    if (problem == NULL)
        return 0;
    CFStringGetCString(problem, reason, sizeof reason, kCFStringEncodingUTF8);
    CFRelease(problem);
    fprintf(stderr, "%s\n", reason);
    return 1;
}

int main(void) {
    if (DatabaseFails())
        return 1;
    /* What is read until the end is of one moment, whatever is plugged in or removed meanwhile. */
    KestrinMIDIBeginReading();
    const ItemCount devices = MIDIGetNumberOfDevices(),
                    externals = MIDIGetNumberOfExternalDevices();
    Surface* surfaces = calloc(devices + externals + 1, sizeof *surfaces);
    size_t count = 0;
    for (ItemCount i = 0; surfaces && i < devices + externals; ++i)
        count += ReadSurface(i < devices ? MIDIGetDevice(i) : MIDIGetExternalDevice(i - devices),
                             &surfaces[count]);
    qsort(surfaces, count, sizeof *surfaces, ByPlace);
    for (size_t i = 0; i < count; ++i) {
        AddPort(&surfaces[i]);
        printf("group %d, position %d: %s", (int)surfaces[i].group, (int)surfaces[i].position,
               surfaces[i].name);
        if (surfaces[i].client != 0)
            printf(", at %d:%d", (int)surfaces[i].client, (int)surfaces[i].port);
        putchar('\n');
    }
    KestrinMIDIEndReading();
    free(surfaces);
    return 0;
}
