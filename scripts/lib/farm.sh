# shellcheck shell=bash disable=SC2034
# A small farm on this machine: munge, a controller of Slurm and nodes as plain processes on the loopback address, with ports that
# are free. Sourced by scripts that test or measure it.
#
#   farm_start FOLDER NODES CPUS   starts it and returns once all nodes are idle; 1 where it cannot be had: `farm_obstacle` says why
#   farm_node N                    starts node N (again)
#   farm_kill_node N               the node's machine dies, with all that runs on it
#   farm_controller [-c]           starts the controller (again); -c: without what it knew
#   farm_kill_controller           kills it
#   farm_until SECONDS TEST        runs a shell's line until it succeeds; 1 when the time is over
#   farm_end                       ends everything by the numbers that were noted; 1 if something lives on
#
# Each node has a space of process numbers of its own, so that the end of its first process is the end of all.

farm_obstacle=
farm_folder=
declare -A farm_ids=()

farm_until() {
    local end=$((SECONDS + $1))
    until bash -c "$2" 2>/dev/null; do
        [ $SECONDS -lt $end ] || return 1
        sleep 0.2
    done
}

# note NAME NUMBER: the shell is to say nothing when it ends.
farm_note() {
    farm_ids[$1]=$2
    disown "$2"
}

farm_kill() {
    kill -KILL "${farm_ids[$1]}"
    farm_until 5 "! kill -0 ${farm_ids[$1]}"
    unset "farm_ids[$1]"
}

# Below those that the system gives to whoever asks for any.
farm_ports() {
    local wanted=$1 port
    farm_free=()
    while [ ${#farm_free[@]} -lt "$wanted" ]; do
        port=$((16000 + RANDOM % 16000))
        if [[ " ${farm_free[*]} " != *" $port "* ]] && ! (: <"/dev/tcp/$farm_address/$port") 2>/dev/null; then
            farm_free+=("$port")
        fi
    done
}

farm_write_configuration() {
    local nodes=$1 cpus=$2 n user
    user=$(id -un)
    cat >"$farm_folder/slurm.conf" <<END
ClusterName=kovalune-test
SlurmctldHost=localhost($farm_address)
SlurmctldPort=${farm_free[0]}
SlurmUser=$user
SlurmdUser=$user
AuthType=auth/munge
CredType=cred/munge
AuthInfo=socket=$farm_folder/munge/socket,cred_expire=5
CommunicationParameters=NoCtldInAddrAny,NoInAddrAny
StateSaveLocation=$farm_folder/state
SlurmdSpoolDir=$farm_folder/spool-%n
SlurmctldPidFile=$farm_folder/slurmctld.pid
SlurmdPidFile=$farm_folder/slurmd-%n.pid
SlurmctldLogFile=$farm_folder/slurmctld.log
SlurmdLogFile=$farm_folder/slurmd-%n.log
ProctrackType=proctrack/linuxproc
TaskPlugin=task/none
MpiDefault=none
JobAcctGatherType=jobacct_gather/none
AccountingStorageType=accounting_storage/none
SchedulerType=sched/builtin
SchedulerParameters=batch_sched_delay=0,sched_interval=1,sched_min_interval=0
SelectType=select/cons_tres
SelectTypeParameters=CR_Core
SlurmdParameters=config_overrides
PropagateResourceLimits=NONE
MailProg=/bin/true
ReturnToService=2
SlurmdTimeout=30
MessageTimeout=5
TCPTimeout=2
BatchStartTimeout=10
KillWait=15
END
    for ((n = 1; n <= nodes; ++n)); do
        echo "NodeName=n$n NodeHostname=localhost NodeAddr=$farm_address Port=${farm_free[$n]} CPUs=$cpus RealMemory=2000 State=UNKNOWN"
    done >>"$farm_folder/slurm.conf"
    echo "PartitionName=test Nodes=n[1-$nodes] Default=YES MaxTime=INFINITE State=UP" >>"$farm_folder/slurm.conf"
}

farm_munge() {
    mkdir -m 711 "$farm_folder/munge"
    (umask 077 && head -c 128 /dev/urandom >"$farm_folder/munge.key" && chmod 400 "$farm_folder/munge.key")
    munged --foreground --key-file="$farm_folder/munge.key" --socket="$farm_folder/munge/socket" \
        --pid-file="$farm_folder/munge/pid" --log-file="$farm_folder/munge.log" --seed-file="$farm_folder/munge.seed" \
        >"$farm_folder/munged.out" 2>&1 &
    farm_note munge $!
    farm_until 10 "[ -S '$farm_folder/munge/socket' ]"
}

farm_controller() {
    slurmctld -D "$@" >"$farm_folder/slurmctld.out" 2>&1 &
    farm_note controller $!
}

farm_kill_controller() {
    farm_kill controller
}

# Becomes `unshare` where it is sent to the background, so that the number is its own.
farm_unshare() {
    local own=()
    [ "$(id -u)" -eq 0 ] || own=(--user --map-current-user)
    exec unshare "${own[@]}" --pid --fork --mount-proc "$@"
}

farm_node() {
    # shellcheck disable=SC2016 # the node's own shell
    farm_unshare --kill-child=KILL bash -c 'slurmd -D -N "$0" & wait; wait' "n$1" \
        >"$farm_folder/n$1.out" 2>&1 &
    farm_note "n$1" $!
}

# unshare itself ignores TERM.
farm_kill_node() {
    farm_kill "n$1"
}

farm_start() {
    local folder=$1 nodes=$2 cpus=$3 n
    farm_folder=$folder/farm
    mkdir -m 755 "$farm_folder" "$farm_folder/state"
    chmod 755 "$folder"
    farm_address=$(getent ahostsv4 "$(hostname)" | cut -d' ' -f1 | head -n 1)
    if [ -z "$farm_address" ]; then
        farm_obstacle="the machine's own name, $(hostname), has no address, which Slurm asks for"
        return 1
    fi
    if ! (farm_unshare true) 2>/dev/null; then
        farm_obstacle="nodes need spaces of process numbers of their own, which unshare is not allowed to make here"
        return 1
    fi
    farm_ports $((nodes + 1))
    farm_write_configuration "$nodes" "$cpus"
    export SLURM_CONF=$farm_folder/slurm.conf
    if ! farm_munge; then
        farm_obstacle="munge does not start: $(tail -n 1 "$farm_folder/munged.out" "$farm_folder/munge.log" 2>/dev/null)"
        return 1
    fi
    farm_controller -c
    for ((n = 1; n <= nodes; ++n)); do
        farm_node "$n"
    done
    if ! farm_until 30 "[ \"\$(sinfo -h -t idle -o %D)\" = $nodes ]"; then
        farm_obstacle="the nodes do not come up: $(tail -n 3 "$farm_folder/slurmctld.log")"
        return 1
    fi
}

# The nodes first: what runs on them goes with them.
farm_end() {
    local name id lives=0
    for name in "${!farm_ids[@]}"; do
        [[ $name != n* ]] || kill -KILL "${farm_ids[$name]}" 2>/dev/null
    done
    for name in controller munge; do
        [ -z "${farm_ids[$name]:-}" ] || kill -TERM "${farm_ids[$name]}" 2>/dev/null
    done
    for name in "${!farm_ids[@]}"; do
        id=${farm_ids[$name]}
        if ! farm_until 5 "! kill -0 $id"; then
            kill -KILL "$id" 2>/dev/null
            farm_until 5 "! kill -0 $id" || lives=1
        fi
    done
    farm_ids=()
    return $lives
}
