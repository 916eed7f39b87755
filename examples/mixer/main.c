/* Prints the control surfaces in the order of their groups and positions, as a mixer reads them. */
#include <CoreMIDI/CoreMIDI.h>
#include <CoreMIDI/MIDIDatabase.h>

#include <stdio.h>
#include <stdlib.h>
#include <string.h>

typedef struct {
    SInt32 group;
    SInt32 position;
    char name[256];
} Surface;

static int ByPlace(const void* one, const void* other) {
    const Surface *a = one, *b = other;
    const int groups = (a->group > b->group) - (a->group < b->group);
    return groups ? groups : (a->position > b->position) - (a->position < b->position);
}

static int ReadSurface(MIDIDeviceRef device, Surface* surface) {
    CFStringRef name = NULL;
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
    const ItemCount devices = MIDIGetNumberOfDevices(),
                    externals = MIDIGetNumberOfExternalDevices();
    Surface* surfaces = calloc(devices + externals + 1, sizeof *surfaces);
    size_t count = 0;
    for (ItemCount i = 0; surfaces && i < devices + externals; ++i)
        count += ReadSurface(i < devices ? MIDIGetDevice(i) : MIDIGetExternalDevice(i - devices),
                             &surfaces[count]);
    qsort(surfaces, count, sizeof *surfaces, ByPlace);
    for (size_t i = 0; i < count; ++i)
        printf("group %d, position %d: %s\n", (int)surfaces[i].group, (int)surfaces[i].position,
               surfaces[i].name);
    free(surfaces);
    return 0;
}
